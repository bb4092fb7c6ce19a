#include "saque/iguales.h"

#include "comun/medidas.h"
#include "flujo/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 256 * kibi;

/// Its size is compared before it is opened: mostly that tells.
Descriptor abreSiMide(int carpeta, const std::string &nombre, off_t bytes) {
    struct stat estado {};
    if (fstatat(carpeta, nombre.c_str(), &estado, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(estado.st_mode) || estado.st_size != bytes)
        return {};
    constexpr int modo = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    Descriptor fd(openat(carpeta, nombre.c_str(), modo));
    if (fd.valido() && (fstat(fd.numero(), &estado) != 0 || !S_ISREG(estado.st_mode)))
        return {};
    return fd;
}

/// Fills `hueco` from `desde` on; false if that cannot be read or ends before.
bool leeEntero(int fd, Hueco hueco, off_t desde) {
    while (!hueco.empty()) {
        const ssize_t leidos = pread(fd, hueco.data(), hueco.size(), desde);
        if (leidos == 0 || (leidos < 0 && errno != EINTR))
            return false;
        if (leidos > 0) {
            hueco = hueco.subspan(static_cast<std::size_t>(leidos));
            desde += leidos;
        }
    }
    return true;
}

/// It may have grown since it was opened.
bool mide(int fd, off_t bytes) {
    struct stat estado {};
    return fstat(fd, &estado) == 0 && estado.st_size == bytes;
}

bool mismoContenido(int uno, int otro, off_t bytes) {
    std::vector<unsigned char> deUno(largoBloque);
    std::vector<unsigned char> deOtro(largoBloque);
    for (off_t desde = 0; desde < bytes;) {
        desde = std::min(trasElHueco(uno, desde, bytes), trasElHueco(otro, desde, bytes));
        const auto cuantos = static_cast<std::size_t>(std::min<off_t>(bytes - desde, largoBloque));
        if (!leeEntero(uno, Hueco(deUno).first(cuantos), desde) ||
            !leeEntero(otro, Hueco(deOtro).first(cuantos), desde) ||
            !std::equal(deUno.begin(), deUno.begin() + static_cast<std::ptrdiff_t>(cuantos),
                        deOtro.begin()))
            return false;
        desde += static_cast<off_t>(cuantos);
    }
    return mide(uno, bytes);
}

} // namespace

off_t trasElHueco(int fd, off_t desde, off_t bytes) {
    const off_t datos = lseek(fd, desde, SEEK_DATA);
    if (datos >= 0)
        return std::min(datos, bytes);
    return errno == ENXIO ? bytes : desde;
}

bool esFicheroCon(int carpeta, const std::string &nombre, Octetos contenido) {
    const auto fd = abreSiMide(carpeta, nombre, static_cast<off_t>(contenido.size()));
    if (!fd.valido())
        return false;
    std::vector<unsigned char> bloque(std::min(largoBloque, contenido.size()));
    off_t bytes = 0; // that are the same
    while (!contenido.empty()) {
        const auto parte = contenido.first(std::min(bloque.size(), contenido.size()));
        if (!leeEntero(fd.numero(), Hueco(bloque).first(parte.size()), bytes) ||
            !std::equal(parte.begin(), parte.end(), bloque.begin()))
            return false;
        contenido = contenido.subspan(parte.size());
        bytes += static_cast<off_t>(parte.size());
    }
    return mide(fd.numero(), bytes);
}

bool esFicheroComo(int carpeta, const std::string &nombre, int fd) {
    struct stat propio {};
    if (fstat(fd, &propio) != 0)
        return false;
    const auto otro = abreSiMide(carpeta, nombre, propio.st_size);
    struct stat suyo {};
    if (otro.valido() && fstat(otro.numero(), &suyo) == 0 && suyo.st_ino == propio.st_ino &&
        suyo.st_dev == propio.st_dev)
        return true;
    return otro.valido() && mismoContenido(otro.numero(), fd, propio.st_size);
}

bool esEnlaceA(int carpeta, const std::string &nombre, std::string_view destino) {
    std::string texto(destino.size() + 1, '\0');
    const ssize_t largo = readlinkat(carpeta, nombre.c_str(), texto.data(), texto.size());
    return largo >= 0 &&
           std::string_view(texto).substr(0, static_cast<std::size_t>(largo)) == destino;
}

} // namespace orcalin
