#include "flujo/compresor.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <array>
#include <lzma.h>
#include <new>

namespace orcalin {
namespace {

// As much history as lets two threads stay within the memory meant for them.
constexpr std::uint32_t diccionario = 24 * mebi;
constexpr std::size_t largoMarco = 2 * diccionario;
constexpr std::size_t largoBocado = 256 * kibi;

lzma_options_lzma ajustes(Trato trato) {
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

/// The encoder of one frame.
class Codificador {
public:
    explicit Codificador(Trato trato) {
        lzma_options_lzma lzma = ajustes(trato);
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
    Codificador(const Codificador &) = delete;
    Codificador &operator=(const Codificador &) = delete;
    ~Codificador() { lzma_end(&flujo); }

    void toma(Octetos bocado, lzma_action accion, std::vector<unsigned char> &hecho) {
        flujo.next_in = bocado.data();
        flujo.avail_in = bocado.size();
        for (bool falta = true; falta;) {
            std::array<unsigned char, 64 * kibi> salida; // filled before it is read
            flujo.next_out = salida.data();
            flujo.avail_out = salida.size();
            const lzma_ret r = lzma_code(&flujo, accion);
            if (r != LZMA_OK && r != LZMA_STREAM_END)
                throw Fallo("la compresión ha fallado");
            hecho.insert(hecho.end(), salida.data(), flujo.next_out);
            falta = accion == LZMA_FINISH ? r != LZMA_STREAM_END : flujo.avail_in > 0;
        }
    }

private:
    lzma_stream flujo = LZMA_STREAM_INIT;
};

class CompresorXz : public Compresor {
public:
    std::vector<unsigned char> marco(Octetos crudo, Trato trato, Avance &avance) override {
        std::vector<unsigned char> hecho;
        Codificador codificador(trato);
        while (!crudo.empty() && !avance.abandonado) {
            const auto bocado = crudo.first(std::min(crudo.size(), largoBocado));
            crudo = crudo.subspan(bocado.size());
            codificador.toma(bocado, crudo.empty() ? LZMA_FINISH : LZMA_RUN, hecho);
            avance.bytes += bocado.size();
        }
        return hecho;
    }
};

} // namespace

Compresion compresionMaxima() {
    const lzma_options_lzma lzma = ajustes(Trato::otro);
    const std::array<lzma_filter, 2> filtros{
        {{LZMA_FILTER_LZMA2, const_cast<lzma_options_lzma *>(&lzma)}, {LZMA_VLI_UNKNOWN, nullptr}}};
    const auto porObrero = lzma_raw_encoder_memusage(filtros.data()) + largoMarco;
    return {Envase::xz, largoMarco, 512 * kibi, obrerosQueCaben(porObrero),
            [] { return std::make_unique<CompresorXz>(); }};
}

} // namespace orcalin
