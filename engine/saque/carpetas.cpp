#include "saque/carpetas.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/provisional.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <utility>

namespace orcalin {
namespace {

/// How many folders are kept open: as the limit of descriptors allows, beside
/// those that a file on its way needs.
std::size_t cuantasAbiertas() {
    constexpr std::size_t muchas = 400;
    constexpr std::size_t otras = 12;
    rlimit limite{};
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0 || limite.rlim_cur <= otras)
        return 1;
    return std::min<std::size_t>(muchas, limite.rlim_cur - otras);
}

/// A path of a hundred thousand components costs the square of that.
constexpr std::size_t rutaMaxima = 16 * kibi;

/// A folder that may be entered but not read will do.
Descriptor abreEn(int madre, const char *nombre) {
    constexpr int modo = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor fd(openat(madre, nombre, O_RDONLY | modo));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(openat(madre, nombre, O_PATH | modo));
    return fd;
}

/// What is in a folder comes back also if its owner has closed it since: it is
/// open to them until the end.
Descriptor abrePaso(Descriptor fd) {
    // A descriptor that is not for reading has no mode to change but by its path.
    const std::string propia = "/proc/self/fd/" + std::to_string(fd.numero());
    if (chmod(propia.c_str(), S_IRWXU) != 0)
        fallaEntrada(errno);
    Descriptor abierta = abreEn(fd.numero(), ".");
    return abierta.valido() ? std::move(abierta) : std::move(fd);
}

} // namespace

std::string_view madreDe(std::string_view ruta) {
    const auto barra = ruta.rfind('/');
    return barra == std::string_view::npos ? std::string_view() : ruta.substr(0, barra);
}

std::string_view nombreDe(std::string_view ruta) {
    return ruta.substr(ruta.rfind('/') + 1);
}

Carpetas::Carpetas(mode_t permisosDados)
    : permisos(permisosDados)
    , abiertasALaVez(cuantasAbiertas()) {
    Descriptor fd = abreEn(AT_FDCWD, ".");
    if (!fd.valido())
        falla("no se puede entrar en la carpeta de destino", errno);
    raiz = describe(std::move(fd), "", false);
}

CarpetaAbierta Carpetas::abre(std::string_view ruta) {
    if (ruta.size() > rutaMaxima)
        fallaEntrada(ENAMETOOLONG);
    std::string_view hecha = ruta;
    CarpetaAbierta carpeta = guardada(hecha);
    while (!carpeta) {
        hecha = madreDe(hecha);
        carpeta = guardada(hecha);
    }
    while (hecha.size() < ruta.size()) {
        hecha = ruta.substr(0, ruta.find('/', hecha.empty() ? 0 : hecha.size() + 1));
        carpeta = baja(*carpeta, hecha);
    }
    return carpeta;
}

void Carpetas::olvida(std::string_view ruta) {
    const auto vieja = abiertas.find(ruta);
    if (vieja == abiertas.end())
        return;
    const auto turno = vieja->second.turno;
    abiertas.erase(vieja);
    turnos.erase(turno);
}

CarpetaAbierta Carpetas::guardada(std::string_view ruta) {
    if (ruta.empty())
        return raiz;
    const auto hallada = abiertas.find(ruta);
    if (hallada == abiertas.end())
        return nullptr;
    turnos.splice(turnos.begin(), turnos, hallada->second.turno);
    return hallada->second.carpeta;
}

CarpetaAbierta Carpetas::baja(const Carpeta &desde, std::string_view ruta) {
    const std::string nombre(nombreDe(ruta));
    const int madre = desde.fd.numero();
    Descriptor fd = abreEn(madre, nombre.c_str());
    bool nueva = false;
    if (!fd.valido() && errno == ENOENT) {
        nueva = mkdirat(madre, nombre.c_str(), permisos) == 0;
        if (nueva || errno == EEXIST)
            fd = abreEn(madre, nombre.c_str());
    }
    if (!fd.valido())
        fallaEntrada(errno);
    return guarda(ruta, std::move(fd), nueva);
}

bool Carpetas::crea(std::string_view ruta) {
    constexpr mode_t soloMia = 0700;
    const auto madre = abre(madreDe(ruta));
    const std::string nombre(nombreDe(ruta));
    if (mkdirat(madre->fd.numero(), nombre.c_str(), soloMia) != 0) {
        if (errno == EEXIST)
            return false;
        fallaEntrada(errno);
    }
    Descriptor fd = abreEn(madre->fd.numero(), nombre.c_str());
    if (!fd.valido())
        fallaEntrada(errno);
    olvida(ruta);
    guarda(ruta, std::move(fd), true);
    return true;
}

CarpetaAbierta Carpetas::guarda(std::string_view ruta, Descriptor fd, bool nueva) {
    CarpetaAbierta carpeta = describe(std::move(fd), ruta, nueva);
    if (abiertas.size() >= abiertasALaVez)
        olvida(turnos.back());
    turnos.emplace_front(ruta);
    abiertas.emplace(turnos.front(), Guardada{carpeta, turnos.begin()});
    return carpeta;
}

CarpetaAbierta Carpetas::describe(Descriptor fd, std::string_view ruta, bool nueva) {
    struct stat estado {};
    if (fstat(fd.numero(), &estado) != 0)
        fallaEntrada(errno);
    const bool mia = estado.st_uid == geteuid() && estado.st_uid != 0;
    if (mia && (estado.st_mode & S_IRWXU) != S_IRWXU && !ruta.empty()) {
        fd = abrePaso(std::move(fd));
        aLaFuerza.emplace_back(ruta, estado.st_mode & 07777);
    }
    // It may fail for other reasons than that there is no list: better to think there is.
    const bool sinLista = fgetxattr(fd.numero(), "system.posix_acl_default", nullptr, 0) < 0 &&
                          (errno == ENODATA || errno == EOPNOTSUPP);
    if (repasadas.insert(estado.st_ino).second && !nueva)
        limpiaProvisionales(fd.numero());
    const bool hereda = !sinLista || (estado.st_mode & S_ISGID) != 0;
    return std::make_shared<const Carpeta>(Carpeta{std::move(fd), hereda});
}

} // namespace orcalin
