#include "comun/senales.h"

#include <array>
#include <climits>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::array<int, 3> senales{SIGTERM, SIGINT, SIGHUP};

// What the handler needs, in memory that is never moved or freed.
std::array<char, PATH_MAX> porBorrar{};
std::array<char, 128> despedida{}; // a command for the shell

/// Whoever reads our last words expects the end right behind them, but giving
/// back hundreds of MiB takes the system a while. A shell in our place has
/// nothing to give back by the time it speaks.
extern "C" void alCancelar(int /*senal*/) {
    if (porBorrar[0] != '\0')
        unlink(porBorrar.data());
    static std::array<char, 3> nombre{"sh"};
    static std::array<char, 3> opcion{"-c"};
    const std::array<char *, 4> argumentos{nombre.data(), opcion.data(), despedida.data(), nullptr};
    execv("/bin/sh", argumentos.data());
    _exit(1);
}

void dispone(void (*accion)(int)) {
    struct sigaction nueva {};
    nueva.sa_handler = accion;
    for (const int senal : senales)
        sigaddset(&nueva.sa_mask, senal);
    for (const int senal : senales)
        sigaction(senal, &nueva, nullptr);
}

void bloquea(int como) {
    sigset_t conjunto{};
    for (const int senal : senales)
        sigaddset(&conjunto, senal);
    pthread_sigmask(como, &conjunto, nullptr);
}

} // namespace

void ignoraSenalesDeEscritura() {
    struct sigaction nueva {};
    nueva.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &nueva, nullptr);
    sigaction(SIGXFSZ, &nueva, nullptr);
}

void atiendeCancelacion(std::string_view texto) {
    const std::string orden = "echo 'Error: " + std::string(texto) + "' >&2; exit 1";
    orden.copy(despedida.data(), despedida.size() - 1);
    dispone(alCancelar);
}

bool borraAlCancelar(const std::string &ruta) {
    if (ruta.size() >= porBorrar.size())
        return false;
    bloquea(SIG_BLOCK);
    memcpy(porBorrar.data(), ruta.c_str(), ruta.size() + 1);
    bloquea(SIG_UNBLOCK);
    return true;
}

void yaNoSeCancela() {
    dispone(SIG_IGN);
}

} // namespace orcalin
