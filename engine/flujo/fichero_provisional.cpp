#include "flujo/fichero_provisional.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/senales.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace orcalin {
namespace {

constexpr mode_t segunUmask = 0666;
constexpr std::string_view noSeEscribe = "no se puede escribir en el destino";
constexpr std::string_view noSeGuarda = "no se puede guardar el archivo";

/// The library's own resolution stops at a link whose target does not exist yet.
std::filesystem::path resuelto(std::filesystem::path destino) {
    constexpr int maximos = 40; // as many as the system follows
    std::error_code error;
    for (int n = 0; n < maximos && std::filesystem::is_symlink(destino, error); ++n)
        destino = destino.parent_path() / std::filesystem::read_symlink(destino, error);
    return destino;
}

bool mismo(const struct stat &a, const struct stat &b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Without the right to read it, a folder can still be written into.
Descriptor abreCarpeta(const std::filesystem::path &ruta) {
    const auto carpeta = ruta.has_parent_path() ? ruta.parent_path() : ".";
    Descriptor fd(open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(open(carpeta.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido())
        falla(noSeEscribe, errno);
    return fd;
}

} // namespace

FicheroProvisional::FicheroProvisional(std::filesystem::path destinoPedido)
    : destino(resuelto(std::move(destinoPedido))) {
    nombre = destino.has_filename() ? destino.filename().string() : ".";
    carpeta = abreCarpeta(destino);
    if (fstatat(carpeta.numero(), nombre.c_str(), &anterior, AT_SYMLINK_NOFOLLOW) != 0)
        anterior = {};
    else if (!S_ISREG(anterior.st_mode))
        throw Fallo("el destino ya existe y no es un fichero");
    limpiaProvisionales(carpeta.numero());
    fichero = creaProvisional(carpeta.numero(), segunUmask);
    if (!fichero.fd.valido() || fstat(fichero.fd.numero(), &propio) != 0)
        falla(noSeEscribe, errno);
}

FicheroProvisional::~FicheroProvisional() {
    if (entregado || !fichero.fd.valido())
        return;
    unlinkat(carpeta.numero(), fichero.nombre.c_str(), 0);
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
    if (fsync(fichero.fd.numero()) != 0)
        falla(noSeGuarda, errno);
}

Descriptor FicheroProvisional::paraLeer() const {
    Descriptor fd(openat(carpeta.numero(), fichero.nombre.c_str(),
                         O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat estado {};
    if (!fd.valido() || fstat(fd.numero(), &estado) != 0)
        falla(noSeGuarda, errno);
    if (!mismo(estado, propio))
        throw Fallo("alguien ha cambiado el archivo mientras se guardaba");
    return fd;
}

void FicheroProvisional::entrega() {
    if (consagraEfimero(nombre.c_str()) != 0)
        falla(noSeGuarda, errno);
    entregado = true;
    // Some file systems cannot flush a folder; the archive itself is safe by now.
    fsync(carpeta.numero());
    std::error_code error;
    if (!std::filesystem::exists(destino, error) && !error)
        throw Fallo("el archivo está guardado, pero su carpeta ya no está donde estaba");
}

bool FicheroProvisional::es(const std::string &otro, const struct stat &estado) const {
    // Another name (hard link) of the old archive is a file like any other.
    const bool elAnterior = anterior.st_nlink > 0 && mismo(estado, anterior) && nombre == otro;
    return mismo(estado, propio) || elAnterior;
}

} // namespace orcalin
