#include "flujo/fichero_provisional.h"

#include "comun/fallo.h"
#include "comun/senales.h"

#include <cerrno>
#include <fcntl.h>
#include <random>
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

void sincronizaCarpeta(const std::filesystem::path &fichero) {
    const auto carpeta = fichero.has_parent_path() ? fichero.parent_path() : ".";
    const Descriptor fd(open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot flush a folder; the archive itself is safe by now.
    if (fd.valido())
        fsync(fd.numero());
}

} // namespace

std::filesystem::path rutaProvisional(const std::filesystem::path &junto) {
    std::random_device azar;
    const auto nombre =
        ".orcalin-" + std::to_string(getpid()) + "-" + std::to_string(azar()) + ".tmp";
    return junto.parent_path() / nombre;
}

FicheroProvisional::FicheroProvisional(std::filesystem::path destinoPedido)
    : destino(resuelto(std::move(destinoPedido)))
    , ruta(rutaProvisional(destino)) {
    if (lstat(destino.c_str(), &anterior) != 0)
        anterior = {};
    else if (!S_ISREG(anterior.st_mode))
        throw Fallo("el destino ya existe y no es un fichero");
    if (!borraAlCancelar(ruta))
        falla(noSeEscribe, ENAMETOOLONG);
    fd = Descriptor(open(ruta.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, segunUmask));
    if (!fd.valido() || fstat(fd.numero(), &propio) != 0)
        falla(noSeEscribe, errno);
}

FicheroProvisional::~FicheroProvisional() {
    if (!entregado && fd.valido())
        unlink(ruta.c_str());
}

void FicheroProvisional::escribe(Octetos datos) {
    while (!datos.empty()) {
        const ssize_t escritos = write(fd.numero(), datos.data(), datos.size());
        if (escritos < 0 && errno != EINTR)
            falla(noSeGuarda, errno);
        if (escritos > 0)
            datos = datos.subspan(static_cast<std::size_t>(escritos));
    }
}

void FicheroProvisional::cierra() {
    if (fsync(fd.numero()) != 0)
        falla(noSeGuarda, errno);
    yaNoSeCancela();
    if (rename(ruta.c_str(), destino.c_str()) != 0)
        falla(noSeGuarda, errno);
    entregado = true;
    sincronizaCarpeta(destino);
}

bool FicheroProvisional::es(const std::string &nombre, const struct stat &estado) const {
    // Another name (hard link) of the old archive is a file like any other.
    const bool elAnterior =
        anterior.st_nlink > 0 && mismo(estado, anterior) && destino.filename() == nombre;
    return mismo(estado, propio) || elAnterior;
}

} // namespace orcalin
