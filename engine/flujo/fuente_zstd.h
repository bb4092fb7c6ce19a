#pragma once

#include "flujo/flujo.h"

#include <memory>
#include <vector>
#include <zstd.h>

namespace orcalin {

/// Decompresses zstd frames one after the other and verifies their checksums.
class FuenteZstd : public Fuente {
public:
    /// Throws Fallo without memory.
    explicit FuenteZstd(std::unique_ptr<Fuente> comprimida);

    std::size_t lee(Hueco hueco) override;

private:
    bool repone();

    struct Libera {
        void operator()(ZSTD_DCtx *contexto) const { ZSTD_freeDCtx(contexto); }
    };

    std::unique_ptr<Fuente> comprimida;
    std::unique_ptr<ZSTD_DCtx, Libera> contexto;
    std::vector<unsigned char> bloque;
    ZSTD_inBuffer entrada{};
    bool enMarco = false;      // a frame has begun and is not complete
    bool hayPendiente = false; // the last call filled its output: more may be ready
};

} // namespace orcalin
