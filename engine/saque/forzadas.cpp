#include "saque/forzadas.h"

#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace orcalin {
namespace {

/// A descriptor that is not for reading has no mode to change but by its path.
int cambia(int fd, mode_t permisos) {
    return chmod(("/proc/self/fd/" + std::to_string(fd)).c_str(), permisos);
}

/// The folder `ruta`, not by way of any link; invalid if it is not there any more.
Descriptor alcanza(int raiz, std::string_view ruta) {
    constexpr int modo = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor fd(openat(raiz, ".", modo));
    while (fd.valido() && !ruta.empty()) {
        const auto barra = std::min(ruta.find('/'), ruta.size());
        fd = Descriptor(openat(fd.numero(), std::string(ruta.substr(0, barra)).c_str(), modo));
        ruta.remove_prefix(std::min(barra + 1, ruta.size()));
    }
    return fd;
}

} // namespace

Forzadas::Forzadas(CarpetaAbierta destino)
    : raiz(std::move(destino))
    , remedio([this] {
        // For ever: nothing must be opened any more.
        cerrojo.lock();
        devuelveTodas();
    }) {}

Forzadas::~Forzadas() {
    devuelve();
}

void Forzadas::abre(int fd, std::string ruta, mode_t permisos) {
    const std::lock_guard guarda(cerrojo);
    lista.emplace_back(std::move(ruta), permisos);
    if (cambia(fd, S_IRWXU) == 0)
        return;
    const int porque = errno;
    lista.pop_back();
    fallaEntrada(porque);
}

void Forzadas::olvida(const std::string &ruta) {
    const std::lock_guard guarda(cerrojo);
    std::erase_if(lista, [&ruta](const auto &forzada) { return forzada.first == ruta; });
}

bool Forzadas::devuelve() {
    const std::lock_guard guarda(cerrojo);
    return devuelveTodas();
}

bool Forzadas::devuelveTodas() {
    bool bien = true;
    // A closed folder bars the way to those in it.
    for (; !lista.empty(); lista.pop_back()) {
        const auto &[ruta, permisos] = lista.back();
        const auto fd = alcanza(raiz->fd.numero(), ruta);
        bien = fd.valido() && cambia(fd.numero(), permisos) == 0 && bien;
    }
    return bien;
}

} // namespace orcalin
