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
const char *despedida = "";

extern "C" void alCancelar(int /*senal*/) {
    if (porBorrar[0] != '\0')
        unlink(porBorrar.data());
    if (write(STDERR_FILENO, despedida, strlen(despedida)) < 0)
        _exit(1); // nobody reads; there is nothing else to do about it
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

void atiendeCancelacion(const char *mensaje) {
    despedida = mensaje;
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
