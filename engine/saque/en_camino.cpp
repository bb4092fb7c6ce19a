#include "saque/en_camino.h"

#include "comun/renombra.h"
#include "comun/senales.h"
#include "flujo/provisional.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace orcalin {
namespace {

/// Whether the disk only does not know how, and another way may do.
bool noSabe(int numero) {
    return numero == EINVAL || numero == ENOSYS || numero == EOPNOTSUPP || numero == EPERM;
}

int renombra(int carpeta, const std::string &uno, const std::string &otro) {
    return renameat(carpeta, uno.c_str(), carpeta, otro.c_str());
}

/// Two names change places, in one step.
int intercambia(int carpeta, const std::string &uno, const std::string &otro) {
    return renameat2(carpeta, uno.c_str(), carpeta, otro.c_str(), RENAME_EXCHANGE);
}

/// A name that leads to an open file without one.
std::string rutaDe(int fd) {
    return "/proc/self/fd/" + std::to_string(fd);
}

Descriptor sinNombre(int carpeta, mode_t permisos) {
    static const bool puedeTomarlo = access("/proc/self/fd", X_OK) == 0;
    if (!puedeTomarlo) {
        errno = EOPNOTSUPP;
        return {};
    }
    return Descriptor(openat(carpeta, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, permisos));
}

} // namespace

EnCamino::EnCamino(CarpetaAbierta carpeta, std::string nombreDado)
    : madre(std::move(carpeta))
    , nombre(std::move(nombreDado)) {}

EnCamino::~EnCamino() {
    if (!llegado)
        unlinkat(madre->fd.numero(), nombre.c_str(), 0);
    sueltaEfimero();
}

bool EnCamino::quedaSiCabe(const std::string &definitivo) {
    llegado = renombraSinPisar(madre->fd.numero(), nombre.c_str(), definitivo.c_str()) == 0;
    if (!llegado && errno != EEXIST)
        fallaEntrada(errno);
    return llegado;
}

void EnCamino::ocupa(const std::string &definitivo) {
    const int carpeta = madre->fd.numero();
    if (renombra(carpeta, nombre, definitivo) == 0) {
        // Between two names of one file a rename does nothing.
        unlinkat(carpeta, nombre.c_str(), 0);
        llegado = true;
        return;
    }
    if (errno != EISDIR)
        fallaEntrada(errno);
    if (intercambia(carpeta, nombre, definitivo) == 0) {
        llegado = unlinkat(carpeta, nombre.c_str(), AT_REMOVEDIR) == 0;
        const int porque = errno;
        if (!llegado) {
            intercambia(carpeta, nombre, definitivo);
            fallaEntrada(porque);
        }
        return;
    }
    if (unlinkat(carpeta, definitivo.c_str(), AT_REMOVEDIR) != 0 ||
        renombraSinPisar(carpeta, nombre.c_str(), definitivo.c_str()) != 0)
        fallaEntrada(errno);
    llegado = true;
}

FicheroNuevo::FicheroNuevo(CarpetaAbierta carpetaDada, mode_t permisos)
    : carpeta(std::move(carpetaDada))
    , fd(sinNombre(carpeta->fd.numero(), permisos)) {
    if (fd.valido())
        return;
    if (!noSabe(errno) && errno != EISDIR && errno != ENOENT)
        fallaEntrada(errno);
    Provisional nuevo = creaProvisional(carpeta->fd.numero(), permisos);
    if (!nuevo.fd.valido())
        fallaEntrada(errno);
    fd = std::move(nuevo.fd);
    camino.emplace(carpeta, std::move(nuevo.nombre));
}

void FicheroNuevo::escribe(std::int64_t desde, Octetos datos) {
    while (!datos.empty()) {
        const ssize_t cuantos = pwrite(fd.numero(), datos.data(), datos.size(), desde);
        if (cuantos < 0 && errno != EINTR)
            fallaEntrada(errno);
        if (cuantos > 0) {
            datos = datos.subspan(static_cast<std::size_t>(cuantos));
            desde += cuantos;
        }
    }
    final = std::max(final, desde);
}

void FicheroNuevo::alarga(std::int64_t bytes) {
    if (final < bytes && ftruncate(fd.numero(), bytes) != 0)
        fallaEntrada(errno);
}

bool FicheroNuevo::aparece(const std::string &nombre) {
    return camino ? camino->quedaSiCabe(nombre) : enlaza(nombre);
}

void FicheroNuevo::ocupa(const std::string &nombre) {
    if (!camino) {
        // Locked as every provisional file is, before it has the name of one.
        flock(fd.numero(), LOCK_EX | LOCK_NB);
        const std::string provisional = nombreProvisional();
        anunciaEfimero(carpeta->fd.numero(), provisional);
        camino.emplace(carpeta, provisional);
        enlaza(provisional);
    }
    camino->ocupa(nombre);
}

bool FicheroNuevo::enlaza(const std::string &nombre) {
    if (linkat(AT_FDCWD, rutaDe(fd.numero()).c_str(), carpeta->fd.numero(), nombre.c_str(),
               AT_SYMLINK_FOLLOW) == 0)
        return true;
    if (errno != EEXIST)
        fallaEntrada(errno);
    return false;
}

void ponCarpetaEnLugarDe(const CarpetaAbierta &carpeta, const std::string &nombre) {
    constexpr mode_t soloMia = 0700;
    const int madre = carpeta->fd.numero();
    const std::string nueva = nombreProvisional();
    if (mkdirat(madre, nueva.c_str(), soloMia) != 0)
        fallaEntrada(errno);
    std::string vieja = nueva; // that is where an exchange leaves it
    bool bien = intercambia(madre, nueva, nombre) == 0;
    if (!bien && noSabe(errno)) {
        vieja = nombreProvisional();
        bien = renombra(madre, nombre, vieja) == 0 && renombra(madre, nueva, nombre) == 0;
    }
    if (!bien) {
        const int porque = errno;
        unlinkat(madre, nueva.c_str(), AT_REMOVEDIR);
        renombraSinPisar(madre, vieja.c_str(), nombre.c_str());
        fallaEntrada(porque);
    }
    if (unlinkat(madre, vieja.c_str(), 0) != 0)
        fallaEntrada(errno);
}

} // namespace orcalin
