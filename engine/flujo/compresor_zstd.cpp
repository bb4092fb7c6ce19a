#include "flujo/compresor.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <new>
#include <zstd.h>

namespace orcalin {
namespace {

constexpr std::size_t largoMarco = 16 * mebi;
constexpr std::size_t largoBocado = 256 * kibi;

struct Libera {
    void operator()(ZSTD_CCtx *contexto) const { ZSTD_freeCCtx(contexto); }
};
using Contexto = std::unique_ptr<ZSTD_CCtx, Libera>;

std::size_t comprobado(std::size_t resultado) {
    if (ZSTD_isError(resultado) != 0)
        throw Fallo("la compresión ha fallado");
    return resultado;
}

class CompresorZstd : public Compresor {
public:
    explicit CompresorZstd(int nivelDado)
        : nivel(nivelDado)
        , contexto(ZSTD_createCCtx())
        , salida(ZSTD_compressBound(largoMarco)) {
        if (!contexto)
            throw std::bad_alloc();
        ajusta(ZSTD_c_checksumFlag, 1);
    }

    std::vector<unsigned char> marco(Octetos crudo, Trato trato, Avance &avance) override;

private:
    void ajusta(ZSTD_cParameter parametro, int valor) {
        comprobado(ZSTD_CCtx_setParameter(contexto.get(), parametro, valor));
    }
    void ajusta(int como);
    [[nodiscard]] bool cede(Octetos crudo);

    int nivel;
    Contexto contexto;
    std::vector<unsigned char> salida;
};

/// The levels from 17 on cost about what they say, but look no farther than 8
/// MiB: here a window as long as the frame comes with them.
void CompresorZstd::ajusta(int como) {
    ajusta(ZSTD_c_compressionLevel, como);
    constexpr int altos = 17;
    constexpr int ventana = 24;
    ajusta(ZSTD_c_windowLog, como >= altos ? ventana : 0);
}

/// Whether the frame gets smaller at all: the cheapest level tells in a
/// hundredth of the time.
bool CompresorZstd::cede(Octetos crudo) {
    ajusta(1);
    const std::size_t largo = comprobado(
        ZSTD_compress2(contexto.get(), salida.data(), salida.size(), crudo.data(), crudo.size()));
    return largo < crudo.size() - crudo.size() / 50;
}

std::vector<unsigned char> CompresorZstd::marco(Octetos crudo, Trato trato, Avance &avance) {
    constexpr int barato = 3;
    const bool enVano = nivel > barato && trato == Trato::comprimido && !cede(crudo);
    ajusta(enVano ? barato : nivel);
    comprobado(ZSTD_CCtx_setPledgedSrcSize(contexto.get(), crudo.size()));
    ZSTD_outBuffer hueco{salida.data(), salida.size(), 0};
    while (!crudo.empty() && !avance.abandonado) {
        const auto bocado = crudo.first(std::min(crudo.size(), largoBocado));
        crudo = crudo.subspan(bocado.size());
        ZSTD_inBuffer entrada{bocado.data(), bocado.size(), 0};
        const auto orden = crudo.empty() ? ZSTD_e_end : ZSTD_e_continue;
        // There is room for the worst case, so one call takes everything.
        comprobado(ZSTD_compressStream2(contexto.get(), &hueco, &entrada, orden));
        avance.bytes += bocado.size();
    }
    return {salida.begin(), salida.begin() + static_cast<std::ptrdiff_t>(hueco.pos)};
}

} // namespace

Compresion compresionHabitual(int nivel) {
    // What a thread takes at the higher levels: tables, window, a frame before and after.
    constexpr std::uint64_t porObrero = 160 * mebi;
    return {Envase::zstd, largoMarco, largoMarco / 4, obrerosQueCaben(porObrero),
            [nivel] { return std::make_unique<CompresorZstd>(nivel); }};
}

} // namespace orcalin
