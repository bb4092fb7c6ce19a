#include "cifrado/contrasena.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/descriptor.h"

#include <cerrno>
#include <fcntl.h>

namespace orcalin {
namespace {

[[noreturn]] void falta() {
    throw Fallo("hace falta la contraseña");
}

// Whoever gave one is not helped by being asked for it again.
[[noreturn]] void noSeLee() {
    falla("no se puede leer el fichero de la clave", errno);
}

constexpr std::size_t tope = 64 * kibi;

} // namespace

Secreto leeContrasena(const std::string &ruta) {
    if (ruta.empty())
        falta();
    const Descriptor fd(open(ruta.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valido())
        noSeLee();
    Secreto contrasena(tope + 1);
    std::size_t total = 0;
    while (total <= tope) {
        const ssize_t leidos = read(fd.numero(), contrasena.data() + total, tope + 1 - total);
        if (leidos < 0)
            noSeLee();
        if (leidos == 0)
            break;
        total += static_cast<std::size_t>(leidos);
    }
    if (total == 0 || total > tope)
        falta();
    contrasena.acorta(total);
    return contrasena;
}

} // namespace orcalin
