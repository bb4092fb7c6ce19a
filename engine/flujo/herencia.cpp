#include "flujo/herencia.h"

#include "comun/medidas.h"
#include "flujo/descriptor.h"
#include "flujo/sitio.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/xattr.h>
#include <utility>

namespace orcalin {
namespace {

constexpr const char *deAcceso = "system.posix_acl_access";

bool noHay(int porque) {
    return porque == ENODATA || porque == EOPNOTSUPP;
}

/// Empty if the file has none; nothing if it cannot be asked.
std::optional<std::string> listaDe(int fd) {
    std::string lista(64 * kibi, '\0'); // as much as there can be
    ssize_t largo = fgetxattr(fd, deAcceso, lista.data(), lista.size());
    if (largo < 0 && errno == EBADF) // open as a name only, since we may not read it
        largo = getxattr(("/proc/self/fd/" + std::to_string(fd)).c_str(), deAcceso, lista.data(),
                         lista.size());
    if (largo < 0 && !noHay(errno))
        return std::nullopt;
    lista.resize(largo < 0 ? 0 : static_cast<std::size_t>(largo));
    return lista;
}

Descriptor abre(int carpeta, const std::string &nombre) {
    constexpr int modo = O_NOFOLLOW | O_CLOEXEC;
    Descriptor fd(openat(carpeta, nombre.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | modo));
    return fd.valido() ? std::move(fd) : Descriptor(openat(carpeta, nombre.c_str(), O_PATH | modo));
}

/// One that the folder has handed on to it.
bool quitaLista(int fd) {
    return fremovexattr(fd, deAcceso) == 0 || noHay(errno);
}

bool ponLista(int fd, const std::string &lista) {
    return fsetxattr(fd, deAcceso, lista.data(), lista.size(), 0) == 0;
}

} // namespace

void heredaPermisos(int nuevo, int carpeta, const std::string &nombre, const struct stat &antes,
                    bool conGrupo) {
    constexpr mode_t dePermiso = 0777;
    const Descriptor viejo = abre(carpeta, nombre);
    struct stat estado {};
    const bool esEl = viejo.valido() && fstat(viejo.numero(), &estado) == 0 && mismo(estado, antes);
    const auto lista = esEl ? listaDe(viejo.numero()) : std::nullopt;
    mode_t permisos = estado.st_mode & dePermiso;
    // What was for one group is not for another; and those of the old one are among the others now.
    if (!conGrupo)
        permisos &= S_IRWXU | (permisos >> 3U & S_IRWXO);
    // With a list the group's bits are no more than its mask, and what others may do is not for
    // those whom it names: without it neither means what it did.
    const bool conLista = lista && !lista->empty() && conGrupo && ponLista(nuevo, *lista);
    if (!conLista && (!quitaLista(nuevo) || !lista || !lista->empty()))
        permisos = antes.st_mode & S_IRWXU;
    fchmod(nuevo, permisos);
}

} // namespace orcalin
