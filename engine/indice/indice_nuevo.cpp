#include "indice/indice_nuevo.h"

#include "comun/fallo.h"
#include "indice/numeros.h"

#include <algorithm>
#include <lzma.h>
#include <memory>
#include <new>
#include <zstd.h>
#include <zstd_errors.h>

namespace orcalin {
namespace {

std::size_t comun(const std::string &una, const std::string &otra) {
    return static_cast<std::size_t>(
        std::mismatch(una.begin(), una.end(), otra.begin(), otra.end()).first - una.begin());
}

void codificaUno(std::vector<unsigned char> &en, const Asiento &asiento, const Asiento &previo) {
    const std::size_t igual = comun(previo.ruta, asiento.ruta);
    ponVariable(en, igual);
    ponVariable(en, asiento.ruta.size() - igual);
    en.insert(en.end(), asiento.ruta.begin() + static_cast<std::ptrdiff_t>(igual),
              asiento.ruta.end());
    en.push_back(static_cast<unsigned char>(asiento.tipo));
    ponVariable(en, asiento.permisos | (asiento.incompleta ? marcaIncompleta : 0U));
    ponVariable(en, asiento.bytes);
    ponVariable(en, enZigzag(static_cast<std::int64_t>(asiento.lugar - lugarTras(previo))));
    if (asiento.tipo == 'h')
        ponVariable(en, asiento.enlazado);
}

std::vector<unsigned char> comprimeZstd(const std::vector<unsigned char> &crudo) {
    constexpr int nivel = 9; // more gains little and is felt in a big archive
    const std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> contexto(ZSTD_createCCtx(),
                                                                        ZSTD_freeCCtx);
    if (!contexto)
        throw std::bad_alloc();
    ZSTD_CCtx_setParameter(contexto.get(), ZSTD_c_compressionLevel, nivel);
    ZSTD_CCtx_setParameter(contexto.get(), ZSTD_c_checksumFlag, 1);
    std::vector<unsigned char> hecho(ZSTD_compressBound(crudo.size()));
    const std::size_t largo =
        ZSTD_compress2(contexto.get(), hecho.data(), hecho.size(), crudo.data(), crudo.size());
    if (ZSTD_getErrorCode(largo) == ZSTD_error_memory_allocation)
        throw std::bad_alloc();
    // The frame's length is told in 32 bits.
    if (ZSTD_isError(largo) != 0 || largo > UINT32_MAX)
        throw Fallo("la compresión ha fallado");
    hecho.resize(largo);
    auto marco = saltable(largo);
    marco.insert(marco.end(), hecho.begin(), hecho.end());
    return marco;
}

/// Its checksum is of another kind than that of the data: by that they are told apart.
std::vector<unsigned char> comprimeXz(const std::vector<unsigned char> &crudo) {
    std::vector<unsigned char> hecho(lzma_stream_buffer_bound(crudo.size()));
    std::size_t largo = 0;
    const lzma_ret r =
        lzma_easy_buffer_encode(LZMA_PRESET_DEFAULT, LZMA_CHECK_CRC32, nullptr, crudo.data(),
                                crudo.size(), hecho.data(), &largo, hecho.size());
    if (r == LZMA_MEM_ERROR)
        throw std::bad_alloc();
    if (r != LZMA_OK)
        throw Fallo("la compresión ha fallado");
    hecho.resize(largo);
    return hecho;
}

} // namespace

IndiceNuevo::Final IndiceNuevo::escribe(Receptor &abajo, Envase envase,
                                        const std::vector<Marco> &marcos) {
    std::sort(asientos.begin(), asientos.end(),
              [](const Asiento &a, const Asiento &b) { return a.ruta < b.ruta; });
    const auto crudo = codifica(marcos);
    auto bytes = envase == Envase::xz ? comprimeXz(crudo) : comprimeZstd(crudo);
    Rotulo rotulo;
    rotulo.largo = bytes.size();
    rotulo.crudo = crudo.size();
    rotulo.entradas = asientos.size();
    rotulo.suma = sumaDe(crudo);
    for (const auto &uno : marcos) {
        rotulo.lugar += uno.empacado;
        rotulo.tar += uno.crudo;
    }
    const auto cola = enMarco(rotulo, envase);
    bytes.insert(bytes.end(), cola.begin(), cola.end());
    abajo.escribe(bytes);
    return {rotulo, lzma_crc64(bytes.data(), bytes.size(), 0)};
}

std::vector<unsigned char> IndiceNuevo::codifica(const std::vector<Marco> &marcos) const {
    std::vector<unsigned char> crudo;
    ponVariable(crudo, marcos.size());
    for (const auto &marco : marcos) {
        ponVariable(crudo, marco.empacado);
        ponVariable(crudo, marco.crudo);
        crudo.insert(crudo.end(), marco.suma.begin(), marco.suma.end());
    }
    const Asiento ninguno;
    const Asiento *previo = &ninguno;
    for (const auto &asiento : asientos) {
        codificaUno(crudo, asiento, *previo);
        previo = &asiento;
    }
    return crudo;
}

} // namespace orcalin
