#include "flujo/fuente_xz.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <new>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 128 * kibi;
// What a file may ask for; ours need a quarter of it.
constexpr std::uint64_t memoriaMaxima = 128 * mebi;

} // namespace

FuenteXz::FuenteXz(std::unique_ptr<Fuente> fuente)
    : comprimida(std::move(fuente))
    , bloque(largoBloque) {
    if (lzma_stream_decoder(&flujo, memoriaMaxima, LZMA_CONCATENATED) != LZMA_OK)
        throw std::bad_alloc();
}

FuenteXz::~FuenteXz() {
    lzma_end(&flujo);
}

std::size_t FuenteXz::lee(Hueco hueco) {
    flujo.next_out = hueco.data();
    flujo.avail_out = hueco.size();
    while (!terminado && flujo.avail_out == hueco.size()) {
        if (flujo.avail_in == 0 && accion == LZMA_RUN) {
            flujo.avail_in = comprimida->lee(bloque);
            flujo.next_in = bloque.data();
            if (flujo.avail_in == 0)
                accion = LZMA_FINISH;
        }
        switch (lzma_code(&flujo, accion)) {
        case LZMA_OK:
            break;
        case LZMA_STREAM_END:
            terminado = true;
            break;
        case LZMA_BUF_ERROR:
            throw Fallo("el archivo está incompleto");
        case LZMA_MEMLIMIT_ERROR:
            throw Fallo("el archivo necesita demasiada memoria para leerse");
        case LZMA_MEM_ERROR:
            throw std::bad_alloc();
        default:
            throw Fallo("el archivo está dañado");
        }
    }
    return hueco.size() - flujo.avail_out;
}

} // namespace orcalin
