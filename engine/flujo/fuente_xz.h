#pragma once

#include "flujo/flujo.h"

#include <lzma.h>
#include <memory>
#include <vector>

namespace orcalin {

/// Decompresses xz streams one after the other and verifies their checksums.
class FuenteXz : public Fuente {
public:
    /// Throws Fallo or std::bad_alloc.
    explicit FuenteXz(std::unique_ptr<Fuente> comprimida);
    ~FuenteXz() override;

    std::size_t lee(Hueco hueco) override;

private:
    std::unique_ptr<Fuente> comprimida;
    std::vector<unsigned char> bloque;
    lzma_stream flujo = LZMA_STREAM_INIT;
    lzma_action accion = LZMA_RUN;
    bool terminado = false;
};

} // namespace orcalin
