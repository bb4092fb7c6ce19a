#pragma once

#include "flujo/flujo.h"

#include <cstdint>
#include <memory>
#include <vector>
#include <zstd.h>

namespace orcalin {

/// How to compress. A frame is the unit that can be read on its own.
struct AjustesZstd {
    int nivel = 0;         ///< 1 to 22
    std::size_t marco = 0; ///< bytes of input in a frame
    int ventana = 0;       ///< log2 of the window; 0 leaves it to the level
};

/// The everyday setting: frames of 16 MiB.
AjustesZstd ajustesDeNivel(int nivel);

/// The smallest result: the highest level, longer frames, and a window as long
/// as a frame, but no longer than an input of `previsto` bytes makes use of.
/// It stays under the 128 MiB that `zstd -d` accepts without being asked to.
AjustesZstd ajustesMaximos(std::uint64_t previsto);

/// Compresses into independent zstd frames, each with a checksum of its content.
class SumideroZstd : public Sumidero {
public:
    /// `abajo` must outlive this. Throws Fallo without memory.
    SumideroZstd(Sumidero &abajo, const AjustesZstd &ajustes);

    void escribe(Octetos datos) override;
    void cierra() override;

private:
    void comprime(Octetos datos, ZSTD_EndDirective orden);

    struct Libera {
        void operator()(ZSTD_CCtx *contexto) const { ZSTD_freeCCtx(contexto); }
    };

    Sumidero &abajo;
    std::unique_ptr<ZSTD_CCtx, Libera> contexto;
    std::vector<unsigned char> salida;
    std::size_t marco;
    std::size_t enElMarco = 0; // bytes of input already in the open frame
};

} // namespace orcalin
