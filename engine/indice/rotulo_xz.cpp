#include "indice/rotulo_xz.h"

#include "comun/fallo.h"

#include <array>
#include <lzma.h>
#include <memory>

namespace orcalin {
namespace {

struct Libera {
    void operator()(lzma_index *indice) const { lzma_index_end(indice, nullptr); }
};

void comprueba(lzma_ret resultado) {
    if (resultado != LZMA_OK)
        throw Fallo("no se puede formar el archivo");
}

} // namespace

// The library's ready-made function compresses where it can; hence in pieces.
std::vector<unsigned char> rotuloXz(Octetos texto) {
    std::vector<unsigned char> salida(largoRotuloXz(texto.size()));
    lzma_stream_flags marcas{};
    marcas.check = LZMA_CHECK_CRC32;
    comprueba(lzma_stream_header_encode(&marcas, salida.data()));
    std::size_t hecho = LZMA_STREAM_HEADER_SIZE;

    lzma_options_lzma lzma{};
    lzma.dict_size = LZMA_DICT_SIZE_MIN;
    std::array<lzma_filter, 2> filtros{{{LZMA_FILTER_LZMA2, &lzma}, {LZMA_VLI_UNKNOWN, nullptr}}};
    lzma_block bloque{};
    bloque.check = marcas.check;
    bloque.filters = filtros.data();
    const std::size_t hueco = salida.size();
    comprueba(lzma_block_uncomp_encode(&bloque, texto.data(), texto.size(), salida.data(), &hecho,
                                       hueco));

    const std::unique_ptr<lzma_index, Libera> indice(lzma_index_init(nullptr));
    comprueba(lzma_index_append(indice.get(), nullptr, lzma_block_unpadded_size(&bloque),
                                bloque.uncompressed_size));
    marcas.backward_size = lzma_index_size(indice.get());
    comprueba(lzma_index_buffer_encode(indice.get(), salida.data(), &hecho, hueco));
    if (hecho + LZMA_STREAM_HEADER_SIZE != salida.size())
        throw Fallo("no se puede formar el archivo");
    comprueba(lzma_stream_footer_encode(&marcas, salida.data() + hecho));
    return salida;
}

} // namespace orcalin
