#include "flujo/fuente_zstd.h"

#include "comun/fallo.h"
#include "flujo/marco.h"

#include <algorithm>
#include <new>
#include <utility>
#include <zstd_errors.h>

namespace orcalin {
namespace {

[[noreturn]] void cuentaElDano(std::size_t codigo) {
    if (ZSTD_getErrorCode(codigo) == ZSTD_error_frameParameter_windowTooLarge)
        throw Fallo("el archivo necesita demasiada memoria para leerse");
    if (ZSTD_getErrorCode(codigo) == ZSTD_error_memory_allocation)
        throw std::bad_alloc();
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

/// Makes `entrada` hold at least `bytes` (few); false if there are not as many.
bool FuenteZstd::reune(std::size_t bytes) {
    if (entrada.size - entrada.pos >= bytes)
        return true;
    const auto resto =
        std::copy(bloque.data() + entrada.pos, bloque.data() + entrada.size, bloque.data()) -
        bloque.data();
    const auto hay = static_cast<std::size_t>(resto);
    entrada = {bloque.data(), hay + llena(*comprimida, Hueco(bloque).subspan(hay)), 0};
    return entrada.size >= bytes;
}

bool FuenteZstd::repone() {
    entrada = {bloque.data(), comprimida->lee(bloque), 0};
    return entrada.size > 0;
}

bool FuenteZstd::salta(std::uint64_t bytes) {
    while (bytes > entrada.size - entrada.pos) {
        bytes -= entrada.size - entrada.pos;
        if (!repone())
            return false;
    }
    entrada.pos += bytes;
    return true;
}

bool FuenteZstd::empiezaMarco() {
    constexpr std::size_t aviso = 8; // magic number and length of a skippable frame
    while (reune(sizeof(std::uint32_t))) {
        if (++vacios > vaciosSeguidos)
            throw Fallo("el archivo está dañado");
        const auto *inicio = static_cast<const unsigned char *>(entrada.src) + entrada.pos;
        const auto numero = [&inicio](std::size_t i) {
            return inicio[i] | inicio[i + 1] << 8U | inicio[i + 2] << 16U |
                   static_cast<std::uint32_t>(inicio[i + 3]) << 24U;
        };
        if (numero(0) == ZSTD_MAGICNUMBER)
            return true;
        if ((numero(0) & ZSTD_MAGIC_SKIPPABLE_MASK) != ZSTD_MAGIC_SKIPPABLE_START || !reune(aviso))
            return false;
        inicio = static_cast<const unsigned char *>(entrada.src) + entrada.pos;
        if (!salta(aviso + std::uint64_t{numero(4)}))
            return false;
    }
    return false;
}

std::size_t FuenteZstd::lee(Hueco hueco) {
    ZSTD_outBuffer salida{hueco.data(), hueco.size(), 0};
    while (salida.pos == 0 && !terminada) {
        if (!enMarco && !empiezaMarco()) {
            terminada = true;
            break;
        }
        // Inside a frame there may be output left that needs no more input.
        if (entrada.pos == entrada.size && !hayPendiente && !repone())
            throw Fallo("el archivo está incompleto");
        const std::size_t resto = ZSTD_decompressStream(contexto.get(), &salida, &entrada);
        if (ZSTD_isError(resto) != 0)
            cuentaElDano(resto);
        enMarco = resto != 0;
        hayPendiente = enMarco && salida.pos == salida.size;
        vacios = salida.pos > 0 ? 0 : vacios;
    }
    return salida.pos;
}

} // namespace orcalin
