#include "comun/senales.h"

#include "comun/consola.h"
#include "comun/renombra.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <sched.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

// All this outlives static destruction: the thread runs until the very end.
std::timed_mutex cerrojo;              // held while a file appears, and while it gets its name
std::atomic<bool> consagrando = false; // the final rename is under way
std::atomic<bool> terminado = false;   // cancelling is over
int carpetaDelEfimero = -1;
std::array<char, NAME_MAX + 1> nombreDelEfimero{}; // empty: there is none

/// A disk that no longer answers may hold the lock for ever, and the end must
/// come all the same. The rename is waited for: its outcome is what we tell.
bool toma() {
    constexpr std::chrono::milliseconds paciencia{300};
    if (cerrojo.try_lock_for(paciencia))
        return true;
    if (!consagrando)
        return false;
    cerrojo.lock();
    return true;
}

/// What the end of this process would have to give back.
struct Herencia {
    pid_t padre;
    int borrado; // the file that was being written, nameless by now; or -1
};

int esperaQueMuera(void *dada) {
    const Herencia herencia = *static_cast<Herencia *>(dada);
    if (herencia.borrado > 0)
        close_range(0, static_cast<unsigned>(herencia.borrado) - 1, 0);
    close_range(static_cast<unsigned>(herencia.borrado + 1), ~0U, 0);
    while (getppid() == herencia.padre)
        usleep(1000);
    _exit(0);
}

/// Whoever reads our last words expects the end right behind them, but giving
/// back hundreds of MiB takes the system a tenth of a second, and the space of a
/// file of gigabytes more than one. A child that shares our memory and has the
/// file open, and no other purpose, does that after we are gone.
void legaLoQuePesa(int borrado) {
    alignas(16) static std::array<char, 16384> pila;
    static Herencia herencia{getpid(), borrado};
    clone(esperaQueMuera, pila.data() + pila.size(), CLONE_VM, &herencia);
}

[[noreturn]] void cancela(const std::string &despedida) {
    int borrado = -1;
    if (nombreDelEfimero[0] != '\0') {
        borrado =
            openat(carpetaDelEfimero, nombreDelEfimero.data(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
        unlinkat(carpetaDelEfimero, nombreDelEfimero.data(), 0);
    }
    legaLoQuePesa(borrado);
    diceYa(despedida);
    _exit(1);
}

void vigila(const sigset_t &senales, const std::string &despedida) {
    for (;;) {
        int senal = 0;
        sigwait(&senales, &senal);
        const bool tomado = toma();
        if (!terminado)
            cancela(despedida);
        if (tomado)
            cerrojo.unlock();
    }
}

/// A name that is longer than any is nobody's.
void apunta(int carpeta, std::string_view nombre) {
    carpetaDelEfimero = carpeta;
    nombreDelEfimero.fill('\0');
    nombre.copy(nombreDelEfimero.data(), nombreDelEfimero.size() - 1);
}

sigset_t atendidas() {
    sigset_t conjunto{};
    sigaddset(&conjunto, SIGTERM);
    for (const int senal : {SIGINT, SIGHUP}) {
        struct sigaction actual {};
        sigaction(senal, nullptr, &actual);
        if (actual.sa_handler != SIG_IGN)
            sigaddset(&conjunto, senal);
    }
    return conjunto;
}

} // namespace

void ignoraSenalesDeEscritura() {
    struct sigaction nueva {};
    nueva.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &nueva, nullptr);
    sigaction(SIGXFSZ, &nueva, nullptr);
}

void atiendeCancelacion(std::string_view texto) {
    // A thread of its own: the key derivation, one block of a high compression
    // level and a stuck disk would keep a flag waiting far too long.
    // No std::call_once: what is thrown through the C library's ends the process.
    static bool vigilado = false;
    if (std::exchange(vigilado, true))
        return;
    const sigset_t senales = atendidas();
    pthread_sigmask(SIG_BLOCK, &senales, nullptr);
    std::thread(vigila, senales, "Error: " + std::string(texto)).detach();
}

int creaEfimero(int carpeta, const char *nombre, int modoDeApertura, mode_t permisos) {
    const std::lock_guard guarda(cerrojo);
    const int fd = openat(carpeta, nombre, modoDeApertura | O_CREAT | O_EXCL, permisos);
    if (fd >= 0)
        apunta(carpeta, nombre);
    return fd;
}

void anunciaEfimero(int carpeta, const std::string &nombre) {
    const std::lock_guard guarda(cerrojo);
    apunta(carpeta, nombre);
}

void sueltaEfimero() {
    const std::lock_guard guarda(cerrojo);
    nombreDelEfimero[0] = '\0';
}

int consagraEfimero(const char *definitivo, bool reemplaza) {
    consagrando = true;
    const std::lock_guard guarda(cerrojo);
    const char *actual = nombreDelEfimero.data();
    const int resultado = reemplaza
                              ? renameat(carpetaDelEfimero, actual, carpetaDelEfimero, definitivo)
                              : renombraSinPisar(carpetaDelEfimero, actual, definitivo);
    if (resultado == 0) {
        nombreDelEfimero[0] = '\0';
        terminado = true;
    }
    consagrando = false;
    return resultado;
}

void yaNoSeCancela() {
    terminado = true;
}

} // namespace orcalin
