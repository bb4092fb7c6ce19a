#pragma once

#include "flujo/almacen.h"
#include "flujo/descriptor.h"

#include <atomic>

namespace orcalin {

/// The bytes of a regular file. Its length is taken once: what is appended
/// later is not seen.
class AlmacenFichero : public Almacen {
public:
    /// Takes a descriptor open for reading. Throws Fallo if it is no regular file.
    explicit AlmacenFichero(Descriptor descriptor);

    [[nodiscard]] std::uint64_t largo() const override { return bytes; }
    std::size_t lee(std::uint64_t desde, Hueco hueco) const override;

    /// Bytes read so far, by whomever, for who watches.
    [[nodiscard]] std::uint64_t leidos() const { return cuenta.load(std::memory_order_relaxed); }

private:
    Descriptor fd;
    std::uint64_t bytes;
    mutable std::atomic<std::uint64_t> cuenta = 0;
};

} // namespace orcalin
