#pragma once

#include "flujo/flujo.h"

#include <memory>
#include <vector>
#include <zstd.h>

namespace orcalin {

/// Decompresses zstd frames one after the other and verifies their checksums.
///
/// Skippable frames are passed over. The data end where something begins that
/// is no frame: whether they are all there is told by the tar stream, and what
/// lies behind it must not keep anybody from it.
class FuenteZstd : public Fuente {
public:
    /// Throws std::bad_alloc.
    explicit FuenteZstd(std::unique_ptr<Fuente> comprimida);

    std::size_t lee(Hueco hueco) override;

private:
    bool repone();
    bool reune(std::size_t bytes);
    bool salta(std::uint64_t bytes);
    bool empiezaMarco();

    struct Libera {
        void operator()(ZSTD_DCtx *contexto) const { ZSTD_freeDCtx(contexto); }
    };

    std::unique_ptr<Fuente> comprimida;
    std::unique_ptr<ZSTD_DCtx, Libera> contexto;
    std::vector<unsigned char> bloque;
    ZSTD_inBuffer entrada{};
    bool enMarco = false;      // a frame has begun and is not complete
    bool hayPendiente = false; // the last call filled its output: more may be ready
    bool terminada = false;
    std::uint64_t vacios = 0; // frames without content since there was any
};

} // namespace orcalin
