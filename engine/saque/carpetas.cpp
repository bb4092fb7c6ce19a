#include "saque/carpetas.h"

#include "comun/fallo.h"
#include "comun/numerado.h"
#include "flujo/provisional.h"
#include "indice/asiento.h"
#include "saque/en_camino.h"
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

constexpr mode_t soloMia = 0700;

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
/// A folder that may be entered but not read will do.
Descriptor abreEn(int madre, const char *nombre) {
    constexpr int modo = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor fd(openat(madre, nombre, O_RDONLY | modo));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(openat(madre, nombre, O_PATH | modo));
    return fd;
}

} // namespace

Carpetas::Carpetas(Descriptor destino, mode_t permisosDados, bool reemplazaDado,
                   Sacados &sacadosDados)
    : permisos(permisosDados)
    , reemplaza(reemplazaDado)
    , sacados(sacadosDados)
    , abiertasALaVez(cuantasAbiertas())
    , raiz(mira(std::move(destino), false))
    , forzadas(raiz) {}

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
        carpeta = baja(carpeta, hecha);
    }
    return carpeta;
}

void Carpetas::describe(const std::string &ruta, Atributos atributos) {
    if (sacados.hay(ruta))
        cambia(ruta);
    abre(ruta);
    // What the user has keeps its attributes.
    if (reemplaza || esNuestra(ruta))
        porAcabar[ruta] = std::move(atributos);
}

/// Of two entries of one path the later one counts, and that is the folder.
void Carpetas::cambia(const std::string &ruta) {
    const auto madre = abre(madreDe(ruta));
    const auto nombre = sacados.nombre(ruta);
    const auto suyo = std::string(nombreDe(ruta));
    const bool nuestro = sacados.esNuestro(ruta);
    sacados.olvida(ruta);
    if (nuestro && nombre != suyo && abreEn(madre->fd.numero(), suyo.c_str()).valido()) {
        // It gave way to the folder of an earlier run.
        unlinkat(madre->fd.numero(), nombre.c_str(), 0);
    } else if (nuestro) {
        ponCarpetaEnLugarDe(madre, nombre);
        sacados.anota(ruta, Sacados::Que::carpeta, nombre, true);
        porAcabar[ruta].reset();
    }
}

void Carpetas::permite(const std::string &ruta, mode_t permisosDados) {
    const auto hecha = porAcabar.find(ruta);
    if (hecha == porAcabar.end() || hecha->second)
        return;
    Atributos atributos;
    atributos.permisos = permisosDados;
    hecha->second = std::move(atributos);
}

void Carpetas::olvida(const std::string &ruta) {
    porAcabar.erase(ruta);
    cierra(ruta);
}

void Carpetas::cierra(std::string_view ruta) {
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

CarpetaAbierta Carpetas::baja(const CarpetaAbierta &desde, std::string_view ruta) {
    const auto nombre = sacados.nombre(ruta);
    const int madre = desde->fd.numero();
    bool nueva = false;
    Descriptor fd = abreEn(madre, nombre.c_str());
    if (!fd.valido() && errno == ENOENT) {
        nueva = mkdirat(madre, nombre.c_str(), soloMia) == 0;
        if (nueva || errno == EEXIST)
            fd = abreEn(madre, nombre.c_str());
    }
    if (!fd.valido() && (errno == ENOTDIR || errno == ELOOP) && !sacados.hay(ruta))
        fd = aparta(desde, std::string(ruta), nueva);
    if (!fd.valido())
        fallaEntrada(errno);
    if (nueva) {
        porAcabar.try_emplace(std::string(ruta));
        sacados.anota(std::string(ruta), Sacados::Que::carpeta, sacados.nombre(ruta), true);
    }
    return guarda(ruta, std::move(fd), nueva);
}

/// Where something that is not ours is in the way: the folder of that name with
/// a number, an earlier run's or a new one.
Descriptor Carpetas::aparta(const CarpetaAbierta &desde, const std::string &ruta, bool &nueva) {
    const std::string nombre(nombreDe(ruta));
    if (reemplaza) {
        ponCarpetaEnLugarDe(desde, nombre);
        nueva = true;
        return abreEn(desde->fd.numero(), nombre.c_str());
    }
    const auto usados = hermanos.numeros(desde, nombre, true);
    for (const auto numero : usados)
        if (Descriptor fd = conNumero(desde, ruta, numero, false, nueva); fd.valido())
            return fd;
    for (unsigned numero = 2;; ++numero)
        if (Descriptor fd = conNumero(desde, ruta, numero, true, nueva); fd.valido())
            return fd;
}

/// Invalid if something else has that name.
Descriptor Carpetas::conNumero(const CarpetaAbierta &desde, const std::string &ruta,
                               unsigned numero, bool creando, bool &nueva) {
    const int madre = desde->fd.numero();
    const auto nombre = numerado(nombreDe(ruta), numero, true);
    nueva = creando && mkdirat(madre, nombre.c_str(), soloMia) == 0;
    if (creando && !nueva && errno != EEXIST)
        fallaEntrada(errno);
    Descriptor fd = abreEn(madre, nombre.c_str());
    if (fd.valido())
        sacados.anota(ruta, Sacados::Que::carpeta, nombre, nueva);
    return fd;
}

CarpetaAbierta Carpetas::guarda(std::string_view ruta, Descriptor fd, bool nueva) {
    if (!nueva)
        fd = abrePaso(std::move(fd), ruta);
    CarpetaAbierta carpeta = mira(std::move(fd), nueva);
    if (abiertas.size() >= abiertasALaVez)
        cierra(turnos.back());
    turnos.emplace_front(ruta);
    abiertas.emplace(turnos.front(), Guardada{carpeta, turnos.begin()});
    return carpeta;
}

/// What is in a folder comes back also if its owner has closed it since: it is
/// open to them until the end.
Descriptor Carpetas::abrePaso(Descriptor fd, std::string_view ruta) {
    struct stat estado {};
    if (fstat(fd.numero(), &estado) != 0)
        fallaEntrada(errno);
    if (estado.st_uid == 0 || estado.st_uid != geteuid() || (estado.st_mode & S_IRWXU) == S_IRWXU)
        return fd;
    forzadas.abre(fd.numero(), sacados.real(ruta), estado.st_mode & 07777);
    Descriptor abierta = abreEn(fd.numero(), ".");
    return abierta.valido() ? std::move(abierta) : std::move(fd);
}

CarpetaAbierta Carpetas::mira(Descriptor fd, bool nueva) {
    struct stat estado {};
    if (fstat(fd.numero(), &estado) != 0)
        fallaEntrada(errno);
    // It may fail for other reasons than that there is no list: better to think there is.
    const bool sinLista = fgetxattr(fd.numero(), "system.posix_acl_default", nullptr, 0) < 0 &&
                          (errno == ENODATA || errno == EOPNOTSUPP);
    if (repasadas.insert(estado.st_ino).second && !nueva)
        limpiaProvisionales(fd.numero());
    const bool hereda = !sinLista || (estado.st_mode & S_ISGID) != 0;
    auto carpeta = std::make_shared<const Carpeta>(Carpeta{std::move(fd), hereda});
    discos.try_emplace(estado.st_dev, carpeta);
    return carpeta;
}

} // namespace orcalin
