#include "comun/medidas.h"
#include "saque/carpetas.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orcalin {
namespace {

/// As if the folder had been made with these permissions, in a folder that hands
/// on its group or its access list.
bool abrePara(int fd, mode_t permisos) {
    std::array<char, 64 * kibi> lista{};
    const ssize_t largo = fgetxattr(fd, "system.posix_acl_default", lista.data(), lista.size());
    if (largo > 0)
        return fsetxattr(fd, "system.posix_acl_access", lista.data(),
                         static_cast<std::size_t>(largo), 0) == 0;
    struct stat estado {};
    return fstat(fd, &estado) == 0 && fchmod(fd, permisos | (estado.st_mode & S_ISGID)) == 0;
}

} // namespace

bool Carpetas::acaba(bool leido) {
    bool bien = true;
    // Inner folders first.
    for (auto i = porAcabar.rbegin(); i != porAcabar.rend(); ++i) {
        try {
            const auto &[ruta, atributos] = *i;
            if (atributos) {
                forzadas.olvida(sacados.real(ruta));
                bien = ponAtributos(abre(ruta)->fd.numero(), *atributos, false) && bien;
            } else
                bien = ponSinDescribir(ruta, leido) && bien;
        } catch (const FalloDeEntrada &) {
            bien = false;
        }
    }
    porAcabar.clear();
    return forzadas.devuelve() && bien;
}

bool Carpetas::vuelca() const {
    return std::all_of(discos.begin(), discos.end(), [](const auto &disco) {
        // A folder that may only be entered is none to flush by.
        return syncfs(disco.second->fd.numero()) == 0 || errno == EBADF;
    });
}

bool Carpetas::ponSinDescribir(const std::string &ruta, bool leido) {
    const int madre = abre(madreDe(ruta))->fd.numero();
    if (unlinkat(madre, sacados.nombre(ruta).c_str(), AT_REMOVEDIR) == 0) {
        cierra(ruta);
        return true;
    }
    if (!leido)
        return true;
    return abrePara(abre(ruta)->fd.numero(), permisos);
}

} // namespace orcalin
