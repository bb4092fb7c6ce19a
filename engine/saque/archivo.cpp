#include "saque/archivo.h"

#include "cifrado/cabecera_age.h"
#include "cifrado/contrasena.h"
#include "cifrado/llavero.h"
#include "comun/fallo.h"
#include "flujo/fuente_de_almacen.h"
#include "flujo/fuente_zstd.h"

#include <cerrno>
#include <fcntl.h>

namespace orcalin {
namespace {

/// A zstd frame, or one of the 16 kinds that decoders skip.
bool esZstd(Octetos inicio) {
    if (inicio.size() < 4)
        return false;
    const auto cola = inicio.subspan(1, 3);
    const bool datos = inicio[0] == 0x28 && cola[0] == 0xb5 && cola[1] == 0x2f && cola[2] == 0xfd;
    const bool saltable =
        (inicio[0] & 0xf0U) == 0x50 && cola[0] == 0x2a && cola[1] == 0x4d && cola[2] == 0x18;
    return datos || saltable;
}

Descriptor abre(const std::filesystem::path &ruta) {
    Descriptor fd(open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!fd.valido())
        falla("no se puede abrir el archivo", errno);
    return fd;
}

} // namespace

// Neither the archive's name nor its path is in these messages: whoever asked
// knows them, and they may contain any word.
Archivo::Archivo(const std::filesystem::path &ruta, const std::string &ficheroContrasena)
    : fichero(abre(ruta)) {
    std::array<unsigned char, cabeceraMaxima> memoria{};
    const auto inicio = Octetos(memoria).first(fichero.lee(0, memoria));
    const std::string_view texto(reinterpret_cast<const char *>(inicio.data()), inicio.size());
    if (texto.starts_with(marcaAge)) {
        const CabeceraAge cabecera = CabeceraAge::lee(texto);
        descifrado.emplace(fichero, cabecera.largo(),
                           claveDe(cabecera, leeContrasena(ficheroContrasena)));
    } else if (!esZstd(inicio)) {
        throw Fallo("no es un archivo .okz");
    }
}

const Almacen &Archivo::almacen() const {
    if (descifrado)
        return *descifrado;
    return fichero;
}

std::unique_ptr<Fuente> Archivo::tar() const {
    return std::make_unique<FuenteZstd>(
        std::make_unique<FuenteDeAlmacen>(almacen(), 0, almacen().largo()));
}

} // namespace orcalin
