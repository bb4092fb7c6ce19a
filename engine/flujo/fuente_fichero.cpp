#include "flujo/fuente_fichero.h"

#include "comun/fallo.h"

#include <cerrno>
#include <unistd.h>

namespace orcalin {

std::size_t FuenteFichero::lee(Hueco hueco) {
    for (;;) {
        const ssize_t leidos = pread(fd, hueco.data(), hueco.size(), posicion);
        if (leidos >= 0) {
            posicion += leidos;
            return static_cast<std::size_t>(leidos);
        }
        if (errno != EINTR)
            falla("no se puede leer el archivo", errno);
    }
}

} // namespace orcalin
