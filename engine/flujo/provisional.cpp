#include "flujo/provisional.h"

#include "comun/senales.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>

namespace orcalin {
namespace {

constexpr std::string_view inicio = ".orcalin-";
constexpr std::string_view final = ".tmp";

bool sonCifras(std::string_view texto) {
    return !texto.empty() &&
           std::all_of(texto.begin(), texto.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// `.orcalin-NÚMERO-NÚMERO.tmp`
bool tieneLaForma(std::string_view nombre) {
    if (!nombre.starts_with(inicio) || !nombre.ends_with(final))
        return false;
    nombre.remove_prefix(inicio.size());
    nombre.remove_suffix(std::min(nombre.size(), final.size()));
    const auto guion = nombre.find('-');
    return guion != std::string_view::npos && sonCifras(nombre.substr(0, guion)) &&
           sonCifras(nombre.substr(guion + 1));
}

void limpia(int carpeta, const char *nombre) {
    // For writing, because a lock on a network needs that.
    constexpr int modo = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor fd(openat(carpeta, nombre, modo));
    struct stat estado {};
    if (fd.valido() && fstat(fd.numero(), &estado) == 0 && S_ISREG(estado.st_mode) &&
        estado.st_uid == geteuid() && flock(fd.numero(), LOCK_EX | LOCK_NB) == 0)
        unlinkat(carpeta, nombre, 0);
}

/// Whether the file is still there once it is locked: between its creation and
/// its lock another run may have taken it for a dead one's. Where there are no
/// locks, nobody can do that.
bool asegura(int fd) {
    while (flock(fd, LOCK_EX) != 0 && errno == EINTR) {
    }
    struct stat estado {};
    return fstat(fd, &estado) == 0 && estado.st_nlink > 0;
}

struct CierraCarpeta {
    void operator()(DIR *carpeta) const { closedir(carpeta); }
};

} // namespace

std::string nombreProvisional() {
    static std::uint64_t numero = std::random_device()();
    std::string nombre(inicio);
    nombre.append(std::to_string(getpid())).append("-").append(std::to_string(numero++));
    return nombre.append(final);
}

Provisional creaProvisional(int carpeta, mode_t permisos) {
    for (;;) {
        std::string nombre = nombreProvisional();
        Descriptor fd(creaEfimero(carpeta, nombre.c_str(), O_RDWR | O_CLOEXEC, permisos));
        if (!fd.valido() || asegura(fd.numero()))
            return {std::move(fd), std::move(nombre)};
    }
}

void limpiaProvisionales(int carpeta) {
    // A descriptor of its own, since reading moves it.
    const int propio = openat(carpeta, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, CierraCarpeta> abierta(propio < 0 ? nullptr : fdopendir(propio));
    while (const dirent *hijo = abierta ? readdir(abierta.get()) : nullptr)
        if (tieneLaForma(hijo->d_name))
            limpia(carpeta, hijo->d_name);
}

} // namespace orcalin
