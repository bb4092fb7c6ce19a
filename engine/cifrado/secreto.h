#pragma once

#include "flujo/flujo.h"

#include <cstddef>
#include <memory>
#include <sodium.h>

namespace orcalin {

/// Bytes that nobody else may see: in guarded memory that is kept out of swap
/// and core dumps where the system allows it, and wiped when given back.
class Secreto {
public:
    /// `largo` zero bytes. Throws std::bad_alloc without memory.
    explicit Secreto(std::size_t largo);

    /// `largo` random bytes.
    static Secreto alAzar(std::size_t largo);

    [[nodiscard]] std::size_t size() const { return largo; }
    [[nodiscard]] unsigned char *data() { return memoria.get(); }
    [[nodiscard]] const unsigned char *data() const { return memoria.get(); }
    [[nodiscard]] Octetos octetos() const { return {data(), largo}; }

    /// Forgets all but the first `nuevo` bytes (at most size()).
    void acorta(std::size_t nuevo);

private:
    struct Libera {
        void operator()(unsigned char *memoria) const { sodium_free(memoria); }
    };
    std::unique_ptr<unsigned char, Libera> memoria;
    std::size_t largo;
};

} // namespace orcalin
