#pragma once

#include "flujo/almacen.h"
#include "flujo/descriptor.h"

#include <memory>

namespace orcalin {

/// A file as the disk gives it back, while it is being written or right after:
/// not what the system still has in memory of what was written to it.
///
/// Where the file system reads directly (O_DIRECT), which flushes first what is
/// about to be read, the system's memory is not in the way at all. Elsewhere the
/// stretch is flushed and the system asked to forget it before it is read. On a
/// file system that lives in memory both are the same thing.
///
/// Unlike other stores it is for one thread at a time.
class AlmacenDirecto : public Almacen {
public:
    /// `fichero` is open for reading. Throws Fallo or std::bad_alloc.
    explicit AlmacenDirecto(Descriptor fichero);
    ~AlmacenDirecto() override;

    /// As long as the file is now.
    [[nodiscard]] std::uint64_t largo() const override;

    /// What is not there yet must not be asked for.
    std::size_t lee(std::uint64_t desde, Hueco hueco) const override;

private:
    void trae(std::uint64_t desde) const;
    void olvida(std::uint64_t desde) const;

    Descriptor fd;
    mutable bool directo;
    struct Memoria;
    std::unique_ptr<Memoria> memoria; // the stretch that was read last
};

} // namespace orcalin
