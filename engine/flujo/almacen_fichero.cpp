#include "flujo/almacen_fichero.h"

#include "comun/fallo.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

std::uint64_t largoDe(int fd) {
    struct stat estado {};
    if (fstat(fd, &estado) != 0)
        falla("no se puede leer el archivo", errno);
    if (!S_ISREG(estado.st_mode))
        throw Fallo("no es un archivo .okz");
    return static_cast<std::uint64_t>(estado.st_size);
}

} // namespace

AlmacenFichero::AlmacenFichero(Descriptor descriptor)
    : fd(std::move(descriptor))
    , bytes(largoDe(fd.numero())) {}

std::size_t AlmacenFichero::lee(std::uint64_t desde, Hueco hueco) const {
    if (desde >= bytes)
        return 0;
    const auto parte = hueco.first(std::min<std::uint64_t>(hueco.size(), bytes - desde));
    std::size_t total = 0;
    while (total < parte.size()) {
        const ssize_t leidos = pread(fd.numero(), parte.data() + total, parte.size() - total,
                                     static_cast<off_t>(desde + total));
        if (leidos < 0 && errno == EINTR)
            continue;
        if (leidos < 0)
            falla("no se puede leer el archivo", errno);
        if (leidos == 0)
            throw Fallo("el archivo ha menguado mientras se leía");
        total += static_cast<std::size_t>(leidos);
    }
    cuenta.fetch_add(total, std::memory_order_relaxed);
    return total;
}

} // namespace orcalin
