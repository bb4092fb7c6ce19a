#include "saque/archivo.h"

#include "cifrado/cabecera_age.h"
#include "cifrado/llavero.h"
#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/descompresion.h"
#include "flujo/fuente_adelantada.h"
#include "flujo/fuente_de_almacen.h"
#include "indice/fuente_sumada.h"
#include "tar/marca.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>

namespace orcalin {
namespace {

constexpr const char *noEsArchivo = "no es un archivo .okz";

/// A zstd frame (or one of the 16 kinds that decoders skip), an xz stream, or
/// what may be tar without compression, which age(1) users make.
std::optional<Envase> envaseDe(const Almacen &almacen) {
    std::array<unsigned char, 6> inicio{};
    if (almacen.lee(0, inicio) < inicio.size())
        throw Fallo(noEsArchivo);
    constexpr std::array<unsigned char, 6> xz{0xfd, '7', 'z', 'X', 'Z', 0};
    if (inicio == xz)
        return Envase::xz;
    const auto es = [&inicio](unsigned primero, unsigned mascara, unsigned segundo,
                              unsigned tercero, unsigned cuarto) {
        return (inicio[0] & mascara) == primero && inicio[1] == segundo && inicio[2] == tercero &&
               inicio[3] == cuarto;
    };
    if (es(0x28, 0xff, 0xb5, 0x2f, 0xfd) || es(0x50, 0xf0, 0x2a, 0x4d, 0x18))
        return Envase::zstd;
    return {};
}

Descriptor abierto(const std::filesystem::path &ruta) {
    Descriptor fd(open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!fd.valido())
        falla("no se puede abrir el archivo", errno);
    return fd;
}

} // namespace

// Neither the archive's name nor its path is in these messages: whoever asked
// knows them, and they may contain any word.
Archivo::Archivo(const std::filesystem::path &ruta, const FicheroContrasena &ficheroContrasena)
    : fichero(abierto(ruta)) {
    std::array<unsigned char, cabeceraMaxima> memoria{};
    const auto inicio = Octetos(memoria).first(fichero.lee(0, memoria));
    const std::string_view texto(reinterpret_cast<const char *>(inicio.data()), inicio.size());
    if (texto.starts_with(marcaAge)) {
        const CabeceraAge cabecera = CabeceraAge::lee(texto);
        descifrado.emplace(fichero, cabecera.largo(), claveDe(cabecera, ficheroContrasena));
    }
    envase = envaseDe(almacen());
    // Without encryption such a file is somebody else's, and has another name.
    if (!envase && !descifrado)
        throw Fallo(noEsArchivo);
}

const Almacen &Archivo::almacen() const {
    if (descifrado)
        return *descifrado;
    return fichero;
}

std::unique_ptr<Indice> Archivo::indice() const {
    return indice(false);
}

std::unique_ptr<Indice> Archivo::indice(bool exige) const {
    try {
        const auto rotulo = envase ? leeRotulo(almacen(), *envase) : std::nullopt;
        if (!rotulo)
            return nullptr;
        return std::make_unique<Indice>(almacen(), *envase, *rotulo, exige);
    } catch (const Fallo &) {
        // The stream has it all, and tells what is wrong with the file itself.
        return nullptr;
    }
}

std::unique_ptr<Indice> Archivo::indiceSano() const {
    const auto estado = envase ? estadoDelRotulo(almacen(), *envase) : EstadoRotulo::noHay;
    const bool promete = prometeIndice();
    if (estado == EstadoRotulo::noHay && promete)
        throw Fallo("al archivo le falta el final, o le sobra algo detrás");
    if (estado == EstadoRotulo::noHay)
        return nullptr;
    auto hallado = indice(true);
    // One of version 1 has no sums to compare, and no mark.
    if (hallado && promete && !hallado->marcos().front().suma)
        throw Fallo("el índice está dañado");
    if (estado == EstadoRotulo::danado || !hallado)
        throw Fallo("el índice está dañado");
    return hallado;
}

bool Archivo::prometeIndice() const {
    Bloque inicio(largoMarca);
    inicio.resize(llena(*abre(0, almacen().largo()), inicio));
    return llevaMarca(inicio);
}

std::unique_ptr<Fuente> Archivo::tar() const {
    return std::make_unique<FuenteAdelantada>(abre(0, almacen().largo()));
}

std::unique_ptr<Fuente> Archivo::tarComprobado(const Indice &indice) const {
    return std::make_unique<FuenteAdelantada>(std::make_unique<FuenteSumada>(
        [this, &indice](std::size_t n) { return marco(indice, n); }, indice));
}

std::unique_ptr<Fuente> Archivo::marco(const Indice &indice, std::size_t marco) const {
    const auto &marcos = indice.marcos();
    const auto &siguiente = marco + 1 < marcos.size() ? marcos[marco + 1] : indice.fin();
    return abre(marcos[marco].inicio, siguiente.inicio);
}

std::unique_ptr<Fuente> Archivo::abre(std::uint64_t desde, std::uint64_t hasta) const {
    auto bytes = std::make_unique<FuenteDeAlmacen>(almacen(), desde, hasta);
    if (envase)
        return descomprime(*envase, std::move(bytes));
    return bytes;
}

void avisaSinIndice(Avisos &avisos) {
    avisos.avisa("el archivo no tiene índice o está dañado; se lee entero");
}

} // namespace orcalin
