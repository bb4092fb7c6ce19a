#pragma once

#include "flujo/flujo.h"

#include <lzma.h>
#include <memory>
#include <optional>
#include <vector>

namespace orcalin {

/// Decompresses xz streams one after the other and verifies their checksums.
///
/// The data end where something begins that is no stream with the same kind of
/// checksum as the first: whether they are all there is told by the tar stream,
/// and what lies behind it must not keep anybody from it.
class FuenteXz : public Fuente {
public:
    explicit FuenteXz(std::unique_ptr<Fuente> comprimida);
    ~FuenteXz() override;

    std::size_t lee(Hueco hueco) override;

private:
    bool empiezaFlujo();
    void repone();

    std::unique_ptr<Fuente> comprimida;
    std::vector<unsigned char> bloque;
    lzma_stream flujo = LZMA_STREAM_INIT;
    std::optional<lzma_check> suma; // of the first stream
    bool enFlujo = false;
    bool terminado = false;
    std::uint64_t vacios = 0; // streams without content since there was any
};

} // namespace orcalin
