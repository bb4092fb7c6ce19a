#include "flujo/sumidero_zstd.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <bit>

namespace orcalin {
namespace {

void ajusta(ZSTD_CCtx *contexto, ZSTD_cParameter parametro, int valor) {
    if (ZSTD_isError(ZSTD_CCtx_setParameter(contexto, parametro, valor)) != 0)
        throw Fallo("no se puede preparar la compresión");
}

} // namespace

AjustesZstd ajustesDeNivel(int nivel) {
    return {nivel, 16 * mebi, 0};
}

AjustesZstd ajustesMaximos(std::uint64_t previsto) {
    constexpr int minima = 20;
    constexpr int maxima = 26;
    const int justa = static_cast<int>(std::bit_width(previsto));
    return {ZSTD_maxCLevel(), 64 * mebi, std::clamp(justa, minima, maxima)};
}

SumideroZstd::SumideroZstd(Sumidero &abajoDado, const AjustesZstd &ajustes)
    : abajo(abajoDado)
    , contexto(ZSTD_createCCtx())
    , salida(ZSTD_CStreamOutSize())
    , marco(ajustes.marco) {
    if (!contexto)
        throw std::bad_alloc();
    ajusta(contexto.get(), ZSTD_c_compressionLevel, ajustes.nivel);
    ajusta(contexto.get(), ZSTD_c_checksumFlag, 1);
    if (ajustes.ventana != 0) {
        ajusta(contexto.get(), ZSTD_c_windowLog, ajustes.ventana);
        // The level's own tables would take 640 MiB; these cost next to no ratio.
        ajusta(contexto.get(), ZSTD_c_chainLog, ajustes.ventana);
        ajusta(contexto.get(), ZSTD_c_hashLog, ajustes.ventana - 2);
    }
}

void SumideroZstd::escribe(Octetos datos) {
    while (!datos.empty()) {
        const auto trozo = datos.first(std::min(datos.size(), marco - enElMarco));
        enElMarco += trozo.size();
        const bool completo = enElMarco == marco;
        comprime(trozo, completo ? ZSTD_e_end : ZSTD_e_continue);
        if (completo)
            enElMarco = 0;
        datos = datos.subspan(trozo.size());
    }
}

void SumideroZstd::cierra() {
    if (enElMarco > 0)
        comprime({}, ZSTD_e_end);
    abajo.cierra();
}

void SumideroZstd::comprime(Octetos datos, ZSTD_EndDirective orden) {
    ZSTD_inBuffer entrada{datos.data(), datos.size(), 0};
    for (bool falta = true; falta;) {
        ZSTD_outBuffer hueco{salida.data(), salida.size(), 0};
        const std::size_t resto = ZSTD_compressStream2(contexto.get(), &hueco, &entrada, orden);
        if (ZSTD_isError(resto) != 0)
            throw Fallo("la compresión ha fallado");
        abajo.escribe(Octetos(salida).first(hueco.pos));
        falta = orden == ZSTD_e_end ? resto != 0 : entrada.pos < entrada.size;
    }
}

} // namespace orcalin
