#include "formas.h"

#include "cifrado/almacen_age.h"
#include "cifrado/cabecera_age.h"
#include "comun/fallo.h"
#include "indice/indice_nuevo.h"
#include "indice/numeros.h"
#include "tar/escritor_tar.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <zstd.h>

using namespace orcalin;

namespace {

class AMemoria : public Receptor {
public:
    void escribe(Octetos datos) override { bytes.insert(bytes.end(), datos.begin(), datos.end()); }
    Bloque bytes;
};

class EnMemoria : public Almacen {
public:
    explicit EnMemoria(Octetos datosDados)
        : datos(datosDados) {}
    [[nodiscard]] std::uint64_t largo() const override { return datos.size(); }
    std::size_t lee(std::uint64_t desde, Hueco hueco) const override {
        const auto parte = datos.subspan(std::min<std::uint64_t>(desde, datos.size()));
        const auto cuantos = std::min(parte.size(), hueco.size());
        std::copy_n(parte.begin(), cuantos, hueco.begin());
        return cuantos;
    }

private:
    Octetos datos;
};

Bloque marco(Octetos datos) {
    Bloque hecho(ZSTD_compressBound(datos.size()));
    hecho.resize(ZSTD_compress(hecho.data(), hecho.size(), datos.data(), datos.size(), 1));
    return hecho;
}

void pon(Bloque &en, const Bloque &que) {
    en.insert(en.end(), que.begin(), que.end());
}

constexpr std::array nombres{"a",         "b",       "b/c",      "mio",           "carpeta",
                             "carpeta/x", "enlace",  "enlace/x", "../fuera",      "/fuera",
                             "b/../d",    "mio (2)", "b/c/d",    "carpeta/propio"};
constexpr std::array<mode_t, 6> modos{0600, 0700, 0755, 0444, 0777, 04755};

void ponEntrada(EscritorTar &tar, Octetos cuatro) {
    const Ficha ficha = nuevaFicha();
    const char *destino = nombres.at(cuatro[1] / nombres.size() % nombres.size());
    archive_entry_set_pathname(ficha.get(), nombres.at(cuatro[1] % nombres.size()));
    archive_entry_set_perm(ficha.get(), modos.at(cuatro[2] % modos.size()));
    const int tipo = cuatro[0] % 5;
    archive_entry_set_filetype(ficha.get(), tipo == 1 ? AE_IFDIR : tipo == 2 ? AE_IFLNK : AE_IFREG);
    archive_entry_set_size(ficha.get(), tipo == 0 ? cuatro[3] : 0);
    if (tipo == 2)
        archive_entry_set_symlink(ficha.get(), destino);
    if (tipo == 3)
        archive_entry_set_hardlink(ficha.get(), destino);
    if (tipo == 4) {
        archive_entry_set_size(ficha.get(), std::int64_t{1} << cuatro[3] % 50U);
        archive_entry_sparse_add_entry(ficha.get(), 0, 1);
    }
    if (tar.cabecera(ficha.get()) && tipo == 0)
        tar.datos(Bloque(cuatro[3], cuatro[0]));
}

} // namespace

Bloque archivoDeEntradas(Octetos datos) {
    AMemoria memoria;
    EscritorTar tar(memoria);
    // What the writer would fill a big entry with is not wanted here.
    for (; datos.size() >= 4 && memoria.bytes.size() < 200'000; datos = datos.subspan(4))
        if (datos[0] % 5 != 4 || datos[3] % 50 < 16)
            ponEntrada(tar, datos.first(4)), tar.acabaEntrada();
    tar.cierra();
    return marco(memoria.bytes);
}

Bloque archivoConIndice(Octetos datos) {
    constexpr std::array<unsigned char, 12> entradas{0, 0, 2, 0, 1, 0, 0, 200, 3, 2, 0, 0};
    static const Bloque tar = [&entradas] {
        AMemoria memoria;
        EscritorTar escritor(memoria);
        for (Octetos resto(entradas); !resto.empty(); resto = resto.subspan(4))
            ponEntrada(escritor, resto.first(4)), escritor.acabaEntrada();
        escritor.cierra();
        return memoria.bytes;
    }();
    static const Bloque unico = marco(tar);
    Bloque claro{1};
    ponVariable(claro, unico.size());
    ponVariable(claro, tar.size());
    const Suma suma = sumaDe(tar);
    claro.insert(claro.end(), suma.begin(), suma.end());
    const std::uint64_t cuantas = datos.empty() ? 0 : datos[0];
    claro.insert(claro.end(), datos.begin() + (datos.empty() ? 0 : 1), datos.end());
    const auto indice = marco(claro);
    Rotulo rotulo;
    rotulo.lugar = unico.size();
    rotulo.largo = saltable(0).size() + indice.size();
    rotulo.crudo = claro.size();
    rotulo.entradas = cuantas;
    rotulo.tar = tar.size();
    rotulo.suma = sumaDe(claro);
    Bloque archivo = unico;
    pon(archivo, saltable(indice.size()));
    pon(archivo, indice);
    pon(archivo, enMarco(rotulo, Envase::zstd));
    return archivo;
}

void leeCifrado(Octetos datos) {
    const std::string texto = std::string(marcaAge) + "-> scrypt " +
                              std::string(reinterpret_cast<const char *>(datos.data()),
                                          std::min(datos.size(), cabeceraMaxima));
    Secreto clave(largoClaveFichero);
    try {
        const auto cabecera = CabeceraAge::lee(texto);
        constexpr int barato = 6;
        if (cabecera.factorDeTrabajo() <= barato)
            (void)cabecera.abre(clave);
    } catch (const Fallo &) {
    }
    const EnMemoria almacen(datos);
    const AlmacenAge claro(almacen, 0, clave);
    Bloque bloque(trozoSellado);
    for (std::uint64_t desde = 0; const auto leidos = claro.lee(desde, bloque); desde += leidos) {
    }
}
