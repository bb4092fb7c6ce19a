#include "saque/archivo.h"

#include "cifrado/cabecera_age.h"
#include "cifrado/contrasena.h"
#include "cifrado/fuente_age.h"
#include "comun/fallo.h"
#include "flujo/fuente_fichero.h"
#include "flujo/fuente_zstd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace orcalin {
namespace {

constexpr const char *noEsArchivo = "no es un archivo .okz";

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

} // namespace

// Neither the archive's name nor its path is in these messages: whoever asked
// knows them, and they may contain any word.
Archivo::Archivo(const std::filesystem::path &ruta, const std::string &ficheroContrasena)
    : fd(open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
    struct stat estado {};
    if (!fd.valido() || fstat(fd.numero(), &estado) != 0)
        falla("no se puede abrir el archivo", errno);
    if (!S_ISREG(estado.st_mode))
        throw Fallo(noEsArchivo);
    reconoce(ficheroContrasena);
}

void Archivo::reconoce(const std::string &ficheroContrasena) {
    std::array<unsigned char, cabeceraMaxima> memoria{};
    FuenteFichero fichero(fd.numero(), 0);
    const auto inicio = Octetos(memoria).first(llena(fichero, memoria));
    const std::string_view texto(reinterpret_cast<const char *>(inicio.data()), inicio.size());
    if (texto.starts_with(marcaAge)) {
        const CabeceraAge cabecera = CabeceraAge::lee(texto);
        claveFichero = cabecera.abre(leeContrasena(ficheroContrasena));
        carga = static_cast<off_t>(cabecera.largo());
    } else if (!esZstd(inicio)) {
        throw Fallo(noEsArchivo);
    }
}

std::unique_ptr<Fuente> Archivo::tar() const {
    std::unique_ptr<Fuente> fuente = std::make_unique<FuenteFichero>(fd.numero(), carga);
    if (claveFichero)
        fuente = std::make_unique<FuenteAge>(std::move(fuente), *claveFichero);
    return std::make_unique<FuenteZstd>(std::move(fuente));
}

} // namespace orcalin
