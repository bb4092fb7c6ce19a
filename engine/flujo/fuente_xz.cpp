#include "flujo/fuente_xz.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/marco.h"

#include <algorithm>
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
    , bloque(largoBloque) {}

FuenteXz::~FuenteXz() {
    lzma_end(&flujo);
}

/// Adds to what is there, which is moved to the front.
void FuenteXz::repone() {
    std::copy(flujo.next_in, flujo.next_in + flujo.avail_in, bloque.data());
    flujo.next_in = bloque.data();
    flujo.avail_in += llena(*comprimida, Hueco(bloque).subspan(flujo.avail_in));
}

bool FuenteXz::empiezaFlujo() {
    if (flujo.avail_in < LZMA_STREAM_HEADER_SIZE)
        repone();
    lzma_stream_flags marcas{};
    if (flujo.avail_in < LZMA_STREAM_HEADER_SIZE ||
        lzma_stream_header_decode(&marcas, flujo.next_in) != LZMA_OK ||
        marcas.check != suma.value_or(marcas.check))
        return false;
    suma = marcas.check;
    if (lzma_stream_decoder(&flujo, memoriaMaxima, 0) != LZMA_OK)
        throw std::bad_alloc();
    return true;
}

std::size_t FuenteXz::lee(Hueco hueco) {
    flujo.next_out = hueco.data();
    flujo.avail_out = hueco.size();
    while (!terminado && flujo.avail_out == hueco.size()) {
        if (!enFlujo && !empiezaFlujo()) {
            terminado = true;
            break;
        }
        enFlujo = true;
        if (flujo.avail_in == 0)
            repone();
        switch (lzma_code(&flujo, flujo.avail_in == 0 ? LZMA_FINISH : LZMA_RUN)) {
        case LZMA_OK:
            break;
        case LZMA_STREAM_END:
            enFlujo = false;
            if (++vacios > vaciosSeguidos)
                throw Fallo("el archivo está dañado");
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
    const auto leidos = hueco.size() - flujo.avail_out;
    vacios = leidos > 0 ? 0 : vacios;
    return leidos;
}

} // namespace orcalin
