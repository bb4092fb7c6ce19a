#include "flujo/fichero_provisional.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "flujo/herencia.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace orcalin {
namespace {

constexpr mode_t segunUmask = 0666;
constexpr mode_t soloMio = 0600;
constexpr std::string_view noSeEscribe = "no se puede escribir en el destino";
constexpr std::string_view noSeGuarda = "no se puede guardar el archivo";
constexpr const char *cambiado = "alguien ha cambiado el archivo mientras se guardaba";

/// By one character of UTF-8.
void acorta(std::string &texto) {
    const auto sigue = [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80; };
    while (texto.size() > 1 && sigue(texto.back()))
        texto.pop_back();
    texto.pop_back();
}

} // namespace

FicheroProvisional::FicheroProvisional(std::filesystem::path destino)
    : sitio(std::move(destino)) {
    limpiaProvisionales(sitio.carpeta());
    // Never open to more people than in the end, not even while it is made.
    fichero = creaProvisional(sitio.carpeta(), sitio.ocupado() ? soloMio : segunUmask);
    if (!fichero.fd.valido() || fstat(fichero.fd.numero(), &propio) != 0)
        falla(noSeEscribe, errno);
}

FicheroProvisional::~FicheroProvisional() {
    if (entregado || !fichero.fd.valido())
        return;
    if (estaEn(sitio.carpeta(), fichero.nombre))
        unlinkat(sitio.carpeta(), fichero.nombre.c_str(), 0);
    sueltaEfimero();
}

void FicheroProvisional::escribe(Octetos datos) {
    while (!datos.empty()) {
        const ssize_t cuantos = write(fichero.fd.numero(), datos.data(), datos.size());
        if (cuantos < 0 && errno != EINTR)
            falla(noSeGuarda, errno);
        if (cuantos > 0) {
            datos = datos.subspan(static_cast<std::size_t>(cuantos));
            escritos += cuantos;
        }
    }
    empuja();
}

/// Has the system write while we compress: flushing it all at the end would
/// take long, and a process cannot even be ended while it does that.
void FicheroProvisional::empuja() {
    constexpr off_t tramo = 8 * mebi;
    if (escritos - empujados < tramo)
        return;
    sync_file_range(fichero.fd.numero(), empujados, escritos - empujados, SYNC_FILE_RANGE_WRITE);
    empujados = escritos;
}

void FicheroProvisional::cierra() {
    if (sitio.ocupado())
        hereda();
    if (fsync(fichero.fd.numero()) != 0)
        falla(noSeGuarda, errno);
}

Descriptor FicheroProvisional::paraLeer() const {
    Descriptor fd(openat(sitio.carpeta(), fichero.nombre.c_str(),
                         O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat estado {};
    if (!fd.valido() || fstat(fd.numero(), &estado) != 0)
        falla(noSeGuarda, errno);
    if (!mismo(estado, propio))
        throw Fallo(cambiado);
    return fd;
}

/// Not before it is complete, since whoever owns it may write to it. Where that is not possible,
/// the archive matters more.
void FicheroProvisional::hereda() {
    constexpr uid_t elQueEs = -1;
    const auto &antes = sitio.deAntes();
    bool conGrupo = true;
    if (antes.st_uid != propio.st_uid || antes.st_gid != propio.st_gid) {
        const uid_t dueno = geteuid() == 0 ? antes.st_uid : elQueEs;
        conGrupo =
            fchown(fichero.fd.numero(), dueno, antes.st_gid) == 0 || antes.st_gid == propio.st_gid;
    }
    heredaPermisos(fichero.fd.numero(), sitio.carpeta(), sitio.nombre(), antes, conGrupo);
}

std::filesystem::path FicheroProvisional::entrega(bool conTodo) {
    std::string tomado = sitio.nombre();
    // What is renamed is a name, and whoever may write into the folder can give that to another
    // file: no longer than between these two looks, and not without our seeing it in the second.
    if (!estaEn(sitio.carpeta(), fichero.nombre))
        throw Fallo(cambiado);
    const bool cede = consagraEfimero(tomado.c_str(), conTodo && sitio.sigueElDeAntes()) != 0;
    if (cede && errno != EEXIST)
        falla(noSeGuarda, errno);
    if (cede)
        tomado = alLado();
    entregado = true;
    // Some file systems cannot flush a folder; the archive itself is safe by now.
    fsync(sitio.carpeta());
    if (!estaEn(sitio.carpeta(), tomado))
        throw Fallo(cambiado);
    auto ruta = sitio.ruta(tomado);
    if (!estaEn(AT_FDCWD, ruta))
        throw Fallo("el archivo está guardado, pero su carpeta ya no está donde estaba");
    if (cede && conTodo)
        throw Fallo(
            "mientras se guardaba ha aparecido otro archivo de ese nombre; el nuevo está en " +
            citado(ruta.string()));
    return ruta;
}

bool FicheroProvisional::estaEn(int carpeta, const std::filesystem::path &ruta) const {
    struct stat estado {};
    return fstatat(carpeta, ruta.c_str(), &estado, AT_SYMLINK_NOFOLLOW) == 0 &&
           mismo(estado, propio);
}

/// Takes the first free name, which it returns; a shorter one where the number
/// does not fit behind it.
std::string FicheroProvisional::alLado() {
    const std::filesystem::path entero(sitio.nombre());
    std::string tronco = entero.stem();
    for (int n = 2;;) {
        const std::string nombre =
            tronco + " (" + std::to_string(n) + ")" + entero.extension().string();
        if (consagraEfimero(nombre.c_str(), false) == 0)
            return nombre;
        if (errno == EEXIST)
            ++n;
        else if (errno == ENAMETOOLONG && !tronco.empty())
            acorta(tronco);
        else
            falla(noSeGuarda, errno);
    }
}

bool FicheroProvisional::es(int carpeta, const std::string &nombre,
                            const struct stat &estado) const {
    if (mismo(estado, propio))
        return true;
    // Another name (hard link) of the old archive is a file like any other, and
    // so is the same name in another folder.
    struct stat esta {};
    return sitio.ocupado() && mismo(estado, sitio.deAntes()) && nombre == sitio.nombre() &&
           fstat(carpeta, &esta) == 0 && !nombresEn(esta).empty();
}

std::vector<std::string> FicheroProvisional::nombresEn(const struct stat &carpeta) const {
    struct stat suya {};
    if (fstat(sitio.carpeta(), &suya) != 0 || !mismo(carpeta, suya))
        return {};
    return {fichero.nombre, sitio.nombre()};
}

} // namespace orcalin
