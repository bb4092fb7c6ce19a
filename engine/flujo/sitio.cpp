#include "flujo/sitio.h"

#include "comun/fallo.h"
#include "comun/senales.h"
#include "flujo/provisional.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>

namespace orcalin {
namespace {

constexpr std::string_view noSeEscribe = "no se puede escribir en el destino";

/// Without the right to read it, a folder can still be written into.
Descriptor abreCarpeta(int desde, const std::filesystem::path &ruta) {
    const char *cual = ruta.empty() ? "." : ruta.c_str();
    Descriptor fd(openat(desde, cual, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(openat(desde, cual, O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido())
        falla(noSeEscribe, errno);
    return fd;
}

struct stat estadoDe(int carpeta) {
    struct stat estado {};
    if (fstat(carpeta, &estado) != 0)
        falla(noSeEscribe, errno);
    return estado;
}

/// As fs.protected_symlinks has it, whether or not it is switched on here: who
/// put the link there must not choose what we write to.
bool esDeFiar(const struct stat &enlace, const struct stat &carpeta) {
    constexpr mode_t deTodos = S_ISVTX | S_IWOTH;
    return (carpeta.st_mode & deTodos) != deTodos || enlace.st_uid == geteuid() ||
           enlace.st_uid == carpeta.st_uid;
}

/// Whether it is protected by more than its mode, or is mounted there.
bool tiene(int carpeta, const char *nombre, unsigned atributos) {
    struct statx estado {};
    return statx(carpeta, nombre, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH, 0, &estado) == 0 &&
           (estado.stx_attributes & atributos) != 0;
}

} // namespace

Sitio::Sitio(std::filesystem::path destino) {
    constexpr int maximos = 40; // as many as the system follows
    resuelve(destino);
    for (int n = 0; sigueUnEnlace(destino); ++n)
        if (n == maximos)
            falla(noSeEscribe, ELOOP);
    compruebaCarpeta();
    if (ocupado())
        compruebaAnterior();
    else
        ensaya();
}

/// Takes the folder of `destino`, which may be relative to the one before.
void Sitio::resuelve(const std::filesystem::path &destino) {
    const auto madre = destino.parent_path();
    abierta = abreCarpeta(abierta.valido() ? carpeta() : AT_FDCWD, madre);
    lugar /= madre;
    suyo = destino.has_filename() ? destino.filename().string() : ".";
    hayAnterior = fstatat(carpeta(), suyo.c_str(), &anterior, AT_SYMLINK_NOFOLLOW) == 0;
    if (!hayAnterior && errno != ENOENT)
        falla(noSeEscribe, errno);
}

/// The library's own resolution stops at a link whose target does not exist
/// yet, and the system's follows what is put there meanwhile.
bool Sitio::sigueUnEnlace(std::filesystem::path &destino) {
    if (!ocupado() || !S_ISLNK(anterior.st_mode))
        return false;
    if (!esDeFiar(anterior, estadoDe(carpeta())))
        throw Fallo("el destino es un enlace que otro usuario ha dejado en una carpeta de todos");
    std::array<char, PATH_MAX> adonde{};
    const ssize_t largo = readlinkat(carpeta(), suyo.c_str(), adonde.data(), adonde.size());
    if (largo < 0)
        falla(noSeEscribe, errno);
    destino = std::string_view(adonde.data(), static_cast<std::size_t>(largo));
    resuelve(destino);
    return true;
}

void Sitio::compruebaCarpeta() const {
    // In one that is only added to, a file would be made and never get its name.
    if (tiene(carpeta(), "", STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND))
        throw Fallo("no se puede escribir en el destino: la carpeta está protegida");
}

void Sitio::compruebaAnterior() const {
    if (!S_ISREG(anterior.st_mode))
        throw Fallo("el destino ya existe y no es un fichero");
    const auto suCarpeta = estadoDe(carpeta());
    const uid_t yo = geteuid();
    if ((suCarpeta.st_mode & S_ISVTX) != 0 && yo != 0 && anterior.st_uid != yo &&
        suCarpeta.st_uid != yo)
        throw Fallo("el archivo que hay es de otro usuario, y su carpeta no deja reemplazarlo");
    if (soloSeLee(anterior))
        throw Fallo("el archivo que hay es de solo lectura");
}

/// A folder's owner may put anything in the place of what others protect, and root may write to
/// what is for nobody to write to. Neither is meant by saving an archive.
bool Sitio::soloSeLee(const struct stat &estado) const {
    constexpr unsigned fijo = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND | STATX_ATTR_MOUNT_ROOT;
    return (estado.st_mode & S_IWUSR) == 0 ||
           faccessat(carpeta(), suyo.c_str(), W_OK, AT_EACCESS) != 0 ||
           tiene(carpeta(), suyo.c_str(), fijo);
}

bool Sitio::sigueElDeAntes() const {
    struct stat ahora {};
    return hayAnterior && fstatat(carpeta(), suyo.c_str(), &ahora, AT_SYMLINK_NOFOLLOW) == 0 &&
           mismo(ahora, anterior) && ahora.st_size == anterior.st_size &&
           ahora.st_mtim.tv_sec == anterior.st_mtim.tv_sec &&
           ahora.st_mtim.tv_nsec == anterior.st_mtim.tv_nsec && !soloSeLee(ahora);
}

/// What a name may be is known to the file system alone, and some only say it
/// when something is to be made: in a folder of our own, for what has the name
/// out here, if only for a moment, may be replaced by another run's archive.
void Sitio::ensaya() const {
    const std::string aparte = nombreProvisional();
    const auto quita = [&] { unlinkat(carpeta(), aparte.c_str(), AT_REMOVEDIR); };
    const AlCancelar siSeCancela(quita);
    if (mkdirat(carpeta(), aparte.c_str(), S_IRWXU) != 0)
        return; // whether anything can be made here is found out by making it
    const int porque = ensayaEn(aparte);
    quita();
    if (porque != 0 && porque != EACCES) // that may come of a list handed on to our folder
        falla(noSeEscribe, porque);
}

int Sitio::ensayaEn(const std::string &aparte) const {
    constexpr mode_t soloMio = 0600;
    const Descriptor dentro(
        openat(carpeta(), aparte.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!dentro.valido())
        return 0;
    const Descriptor fd(creaEfimero(dentro.numero(), suyo.c_str(), O_WRONLY | O_CLOEXEC, soloMio));
    if (!fd.valido())
        return errno;
    unlinkat(dentro.numero(), suyo.c_str(), 0);
    sueltaEfimero();
    return 0;
}

} // namespace orcalin
