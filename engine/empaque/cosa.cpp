#include "empaque/cosa.h"

#include <array>
#include <cerrno>
#include <climits>
#include <ctime>
#include <fcntl.h>

namespace orcalin {
namespace {

Descriptor abre(int carpeta, const char *nombre, int modo) {
    return Descriptor(openat(carpeta, nombre, modo | O_NOFOLLOW | O_CLOEXEC));
}

/// Another program may have a file to itself (a lease) until it learns, from the
/// first try, that somebody else wants it.
Descriptor abreFichero(int carpeta, const char *nombre) {
    constexpr int veces = 30;
    constexpr timespec pausa{0, 100'000'000};
    for (int vez = 0;; ++vez) {
        Descriptor fd = abre(carpeta, nombre, O_RDONLY | O_NONBLOCK | O_NOCTTY);
        if (fd.valido() || errno != EAGAIN || vez == veces)
            return fd;
        nanosleep(&pausa, nullptr);
    }
}

} // namespace

bool abre(int carpeta, const char *nombre, mode_t clase, Cosa &cosa) {
    cosa.leible = clase != S_IFLNK;
    if (clase == S_IFREG)
        cosa.fd = abreFichero(carpeta, nombre);
    else if (clase == S_IFDIR)
        cosa.fd = abre(carpeta, nombre, O_RDONLY | O_DIRECTORY);
    // A link cannot be opened otherwise, and a folder need not be open to us.
    if (clase == S_IFLNK || (clase == S_IFDIR && !cosa.fd.valido() && errno == EACCES)) {
        cosa.leible = false;
        cosa.fd = abre(carpeta, nombre, O_PATH);
    }
    return cosa.fd.valido() && fstat(cosa.fd.numero(), &cosa.estado) == 0;
}

std::string adonde(const Cosa &enlace) {
    std::array<char, PATH_MAX> texto{};
    const ssize_t largo = readlinkat(enlace.fd.numero(), "", texto.data(), texto.size());
    return {texto.data(), largo > 0 ? static_cast<std::size_t>(largo) : 0};
}

} // namespace orcalin
