#include "empaque/origenes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>

namespace orcalin {
namespace {

/// As the limit of descriptors allows, beside those that packing itself needs.
std::size_t cuantasAbiertas() {
    constexpr std::size_t muchas = 400;
    constexpr std::size_t otras = 12;
    rlimit limite{};
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0 || limite.rlim_cur <= otras)
        return 1;
    return std::min<std::size_t>(muchas, limite.rlim_cur - otras);
}

/// A folder that may be entered but not read will do.
Descriptor abreEn(int madre, const char *nombre, int modo) {
    Descriptor fd(openat(madre, nombre, O_RDONLY | O_DIRECTORY | O_CLOEXEC | modo));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(openat(madre, nombre, O_PATH | O_DIRECTORY | O_CLOEXEC | modo));
    return fd;
}

} // namespace

Origenes::Origenes()
    : cuantas(cuantasAbiertas()) {}

Origenes::Numero Origenes::lugar(const std::string &ruta) {
    const bool elDeAntes =
        !carpetas.empty() && carpetas.back().madre == ninguna && carpetas.back().nombre == ruta;
    return elDeAntes ? static_cast<Numero>(carpetas.size()) - 1 : anade({ninguna, ruta});
}

Origenes::Numero Origenes::dentro(Numero madre, const std::string &nombre) {
    return anade({madre, nombre});
}

Origenes::Numero Origenes::anade(Carpeta carpeta) {
    carpetas.push_back(std::move(carpeta));
    return static_cast<Numero>(carpetas.size()) - 1;
}

int Origenes::abre(Numero carpeta) {
    std::vector<Numero> cerradas; // the innermost first
    int fd = -1;
    for (Numero n = carpeta; n != ninguna && fd < 0; n = carpetas[n].madre) {
        fd = guardada(n);
        if (fd < 0)
            fd = subeA(n);
        if (fd < 0)
            cerradas.push_back(n);
    }
    for (; !cerradas.empty(); cerradas.pop_back()) {
        const Carpeta &esta = carpetas[cerradas.back()];
        const char *nombre = esta.nombre.empty() ? "." : esta.nombre.c_str();
        Descriptor nueva =
            esta.madre == ninguna ? abreEn(AT_FDCWD, nombre, 0) : abreEn(fd, nombre, O_NOFOLLOW);
        if (!nueva.valido())
            return -1;
        fd = guarda(cerradas.back(), std::move(nueva));
    }
    return fd;
}

/// Goes there from the folder that was used last, if that is in it; -1 if not.
/// Else the way out of a deep tree would cost as much at every step as the way
/// in, once there are more folders than can be kept open.
int Origenes::subeA(Numero carpeta) {
    if (abiertas.empty() || carpetas[abiertas.front().first].madre != carpeta)
        return -1;
    const Carpeta &esta = carpetas[carpeta];
    Descriptor fd = abreEn(abiertas.front().second.numero(), "..", 0);
    struct stat estado {};
    // Whoever moves a folder meanwhile must not lead us elsewhere.
    if (!fd.valido() || fstat(fd.numero(), &estado) != 0 || estado.st_dev != esta.disco ||
        estado.st_ino != esta.inodo)
        return -1;
    return guarda(carpeta, std::move(fd));
}

int Origenes::guarda(Numero carpeta, Descriptor fd) {
    const int numero = fd.numero();
    struct stat estado {};
    if (fstat(numero, &estado) == 0) {
        carpetas[carpeta].disco = estado.st_dev;
        carpetas[carpeta].inodo = estado.st_ino;
    }
    abiertas.emplace_front(carpeta, std::move(fd));
    donde.emplace(carpeta, abiertas.begin());
    if (abiertas.size() > cuantas) {
        donde.erase(abiertas.back().first);
        abiertas.pop_back();
    }
    return numero;
}

/// -1 if it is not open.
int Origenes::guardada(Numero carpeta) {
    const auto hallada = donde.find(carpeta);
    if (hallada == donde.end())
        return -1;
    abiertas.splice(abiertas.begin(), abiertas, hallada->second);
    return hallada->second->second.numero();
}

std::string Origenes::ruta(Numero carpeta, const std::string &nombre) const {
    std::vector<std::string_view> partes{nombre};
    for (Numero n = carpeta; n != ninguna; n = carpetas[n].madre)
        partes.emplace_back(carpetas[n].nombre);
    std::string entera;
    for (auto parte = partes.rbegin(); parte != partes.rend(); ++parte) {
        // The current folder has no name where another one stands before it.
        if (!entera.empty() && *parte == ".")
            continue;
        if (!entera.empty() && entera.back() != '/')
            entera += '/';
        entera += *parte;
    }
    return entera;
}

} // namespace orcalin
