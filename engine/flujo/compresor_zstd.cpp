#include "flujo/compresor.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <new>
#include <zstd.h>
#include <zstd_errors.h>

namespace orcalin {
namespace {

constexpr std::size_t largoMarco = 16 * mebi;

struct Libera {
    void operator()(ZSTD_CCtx *contexto) const { ZSTD_freeCCtx(contexto); }
};

std::size_t comprobado(std::size_t resultado) {
    if (ZSTD_getErrorCode(resultado) == ZSTD_error_memory_allocation)
        throw std::bad_alloc();
    if (ZSTD_isError(resultado) != 0)
        throw Fallo("la compresión ha fallado");
    return resultado;
}

class CompresorZstd : public Compresor {
public:
    explicit CompresorZstd(int nivelDado)
        : nivel(nivelDado)
        , contexto(ZSTD_createCCtx())
        , salida(ZSTD_CStreamOutSize()) {
        if (!contexto)
            throw std::bad_alloc();
        ajusta(ZSTD_c_checksumFlag, 1);
    }

    void empieza(Octetos primero, bool entero, Trato trato) override;
    void toma(Octetos bocado, bool ultimo, Bloque &sale) override;

private:
    void ajusta(ZSTD_cParameter parametro, int valor) {
        comprobado(ZSTD_CCtx_setParameter(contexto.get(), parametro, valor));
    }

    int nivel;
    std::unique_ptr<ZSTD_CCtx, Libera> contexto;
    Bloque salida;
};

void CompresorZstd::empieza(Octetos primero, bool entero, Trato trato) {
    constexpr int barato = 3;
    // The high levels look no farther than 8 MiB of their own accord; a window
    // as long as the frame costs them nothing.
    constexpr int altos = 17;
    constexpr int ventana = 24;
    const bool enVano = nivel > barato && trato == Trato::comprimido && !encoge(primero);
    const int como = enVano ? barato : nivel;
    ajusta(ZSTD_c_compressionLevel, como);
    ajusta(ZSTD_c_windowLog, como >= altos && !entero ? ventana : 0);
    if (entero)
        comprobado(ZSTD_CCtx_setPledgedSrcSize(contexto.get(), primero.size()));
}

void CompresorZstd::toma(Octetos bocado, bool ultimo, Bloque &sale) {
    ZSTD_inBuffer entrada{bocado.data(), bocado.size(), 0};
    for (bool falta = true; falta;) {
        ZSTD_outBuffer hueco{salida.data(), salida.size(), 0};
        const std::size_t resto = comprobado(ZSTD_compressStream2(
            contexto.get(), &hueco, &entrada, ultimo ? ZSTD_e_end : ZSTD_e_continue));
        sale.insert(sale.end(), salida.data(), salida.data() + hueco.pos);
        falta = ultimo ? resto != 0 : entrada.pos < entrada.size;
    }
}

} // namespace

bool encoge(Octetos muestra) {
    Bloque hueco(ZSTD_compressBound(muestra.size()));
    const std::size_t largo =
        comprobado(ZSTD_compress(hueco.data(), hueco.size(), muestra.data(), muestra.size(), 1));
    return largo < muestra.size() - muestra.size() / 50;
}

Compresion compresionHabitual(int nivel) {
    // What a thread takes at the higher levels: tables, window, a frame before and after.
    constexpr std::uint64_t porObrero = 160 * mebi;
    const unsigned obreros = obrerosQueCaben(porObrero);
    return {Envase::zstd,   largoMarco,
            largoMarco / 4, (obreros + 1) * largoMarco,
            obreros,        [nivel] { return std::make_unique<CompresorZstd>(nivel); }};
}

} // namespace orcalin
