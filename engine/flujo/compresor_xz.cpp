#include "flujo/compresor.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <array>
#include <lzma.h>
#include <new>

namespace orcalin {
namespace {

// A dictionary takes eleven times its size. One of 56 MiB, or two of 24, is all
// that fits into the memory meant for compression.
constexpr std::uint64_t diccionarioUnico = 56 * mebi;
constexpr std::uint64_t diccionarioDeDos = 24 * mebi;
constexpr std::size_t largoMarco = 64 * mebi;

/// What fits into one dictionary is worth more whole than a second thread; what
/// does not is done in half the time by two, and comes out 1.7 % larger.
std::uint32_t diccionarioPara(std::uint64_t previstos) {
    const auto largo = previstos > diccionarioUnico ? diccionarioDeDos : previstos;
    return static_cast<std::uint32_t>(std::max<std::uint64_t>(largo, mebi));
}

lzma_options_lzma ajustes(Trato trato, std::uint32_t diccionario) {
    lzma_options_lzma lzma{};
    lzma_lzma_preset(&lzma, 9 | LZMA_PRESET_EXTREME);
    lzma.dict_size = diccionario;
    lzma.nice_len = 273; // as long as a match can be
    if (trato == Trato::texto) {
        // Letters follow from letters and have no alignment.
        lzma.lc = LZMA_LCLP_MAX;
        lzma.pb = 0;
    }
    return lzma;
}

lzma_vli filtro(Trato trato) {
    switch (trato) {
    case Trato::x86:
        return LZMA_FILTER_X86;
    case Trato::arm64:
        return LZMA_FILTER_ARM64;
    case Trato::arm:
        return LZMA_FILTER_ARMTHUMB;
    default:
        return LZMA_VLI_UNKNOWN;
    }
}

class CompresorXz : public Compresor {
public:
    explicit CompresorXz(std::uint32_t diccionarioDado)
        : diccionario(diccionarioDado) {}
    ~CompresorXz() override { lzma_end(&flujo); }

    void empieza(Octetos primero, bool entero, Trato trato) override;
    void toma(Octetos bocado, bool ultimo, Bloque &sale) override;

private:
    std::uint32_t diccionario;
    lzma_stream flujo = LZMA_STREAM_INIT;
};

void CompresorXz::empieza(Octetos primero, bool entero, Trato trato) {
    lzma_options_lzma lzma = ajustes(trato, diccionario);
    if (entero)
        lzma.dict_size =
            std::max<std::uint32_t>(static_cast<std::uint32_t>(primero.size()), LZMA_DICT_SIZE_MIN);
    std::array<lzma_filter, 3> filtros{};
    auto *siguiente = filtros.data();
    if (filtro(trato) != LZMA_VLI_UNKNOWN)
        *siguiente++ = {filtro(trato), nullptr};
    *siguiente++ = {LZMA_FILTER_LZMA2, &lzma};
    *siguiente = {LZMA_VLI_UNKNOWN, nullptr};
    const lzma_ret r = lzma_stream_encoder(&flujo, filtros.data(), LZMA_CHECK_CRC64);
    if (r == LZMA_MEM_ERROR)
        throw std::bad_alloc();
    if (r != LZMA_OK)
        throw Fallo("no se puede preparar la compresión");
}

void CompresorXz::toma(Octetos bocado, bool ultimo, Bloque &sale) {
    flujo.next_in = bocado.data();
    flujo.avail_in = bocado.size();
    for (bool falta = true; falta;) {
        std::array<unsigned char, 64 * kibi> salida; // filled before it is read
        flujo.next_out = salida.data();
        flujo.avail_out = salida.size();
        const lzma_ret r = lzma_code(&flujo, ultimo ? LZMA_FINISH : LZMA_RUN);
        if (r == LZMA_MEM_ERROR)
            throw std::bad_alloc();
        if (r != LZMA_OK && r != LZMA_STREAM_END)
            throw Fallo("la compresión ha fallado");
        sale.insert(sale.end(), salida.data(), flujo.next_out);
        falta = ultimo ? r != LZMA_STREAM_END : flujo.avail_in > 0;
    }
}

} // namespace

Compresion compresionMaxima(std::uint64_t previstos) {
    const auto diccionario = diccionarioPara(previstos);
    lzma_options_lzma lzma = ajustes(Trato::otro, diccionario);
    const std::array<lzma_filter, 2> filtros{
        {{LZMA_FILTER_LZMA2, &lzma}, {LZMA_VLI_UNKNOWN, nullptr}}};
    // A frame begins once all of the one before is here: with less room than a
    // frame takes, the second thread starts late and then keeps up.
    return {Envase::xz,
            largoMarco,
            512 * kibi,
            largoMarco / 4 * 3,
            obrerosQueCaben(lzma_raw_encoder_memusage(filtros.data())),
            [diccionario] { return std::make_unique<CompresorXz>(diccionario); }};
}

} // namespace orcalin
