#include "flujo/fuente_zstd.h"

#include "comun/fallo.h"

#include <new>
#include <utility>
#include <zstd_errors.h>

namespace orcalin {
namespace {

[[noreturn]] void cuentaElDano(std::size_t codigo) {
    if (ZSTD_getErrorCode(codigo) == ZSTD_error_frameParameter_windowTooLarge)
        throw Fallo("el archivo necesita demasiada memoria para leerse");
    throw Fallo("el archivo está dañado");
}

} // namespace

FuenteZstd::FuenteZstd(std::unique_ptr<Fuente> fuente)
    : comprimida(std::move(fuente))
    , contexto(ZSTD_createDCtx())
    , bloque(ZSTD_DStreamInSize()) {
    if (!contexto)
        throw std::bad_alloc();
}

bool FuenteZstd::repone() {
    const std::size_t leidos = comprimida->lee(bloque);
    entrada = {bloque.data(), leidos, 0};
    if (leidos == 0 && enMarco)
        throw Fallo("el archivo está incompleto");
    return leidos > 0;
}

std::size_t FuenteZstd::lee(Hueco hueco) {
    ZSTD_outBuffer salida{hueco.data(), hueco.size(), 0};
    while (salida.pos == 0) {
        // Inside a frame there may be output left that needs no more input.
        if (entrada.pos == entrada.size && !hayPendiente && !repone())
            return 0;
        const std::size_t resto = ZSTD_decompressStream(contexto.get(), &salida, &entrada);
        if (ZSTD_isError(resto) != 0)
            cuentaElDano(resto);
        enMarco = resto != 0;
        hayPendiente = enMarco && salida.pos == salida.size;
    }
    return salida.pos;
}

} // namespace orcalin
