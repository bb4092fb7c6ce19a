#include "comun/senales.h"

#include "comun/consola.h"
#include "comun/medidas.h"
#include "comun/renombra.h"
#include "flujo/descriptor.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <future>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orcalin {
namespace {

// All this outlives static destruction: the thread runs until the very end.

enum class Fase { enMarcha, consagrando, cancelando, terminada };
std::atomic<Fase> fase = Fase::enMarcha; // decides between a cancel and all that is final
std::atomic<unsigned> pasos = 0;         // of giving back space

std::mutex cerrojo; // held while a file appears, and while it gets its name
int carpetaDelEfimero = -1;
std::array<char, NAME_MAX + 1> nombreDelEfimero{}; // empty: there is none

std::mutex turnoDeRemedios;
std::vector<const std::function<void()> *> remedios; // what AlCancelar objects have

/// From the first phase to another, unless everything is over. Once a cancel has
/// begun nobody comes back from here: the process is about to end.
void pasaA(Fase nueva) {
    Fase actual = Fase::enMarcha;
    if (!fase.compare_exchange_strong(actual, nueva))
        while (actual == Fase::cancelando)
            pause();
}

/// Whether there is still something to cancel. The final rename is waited for:
/// its outcome is what we tell.
bool empiezaACancelar() {
    for (;;) {
        Fase actual = Fase::enMarcha;
        if (fase.compare_exchange_strong(actual, Fase::cancelando))
            return true;
        if (actual == Fase::terminada)
            return false;
        fase.wait(actual);
    }
}

/// Gives back the space of a file that nobody can open any more, bit by bit.
void vacia(int fd, off_t bytes) {
    constexpr off_t tramo = 64 * mebi;
    do {
        bytes = std::max<off_t>(bytes - tramo, 0);
        ++pasos;
    } while (ftruncate(fd, bytes) == 0 && bytes > 0);
}

/// Removes the ephemeral file and gives back its space, which takes the system
/// seconds for some gigabytes; left to the end of the process, they would come
/// between the last words and the end.
void borraElEfimero() {
    if (nombreDelEfimero[0] == '\0')
        return;
    const Descriptor fd(openat(carpetaDelEfimero, nombreDelEfimero.data(),
                               O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    unlinkat(carpetaDelEfimero, nombreDelEfimero.data(), 0);
    // It may be a link to a file that stays, or have got its other name just now.
    struct stat estado {};
    if (fd.valido() && fstat(fd.numero(), &estado) == 0 && estado.st_nlink == 0)
        vacia(fd.numero(), estado.st_size);
}

void remedia() {
    const std::lock_guard guarda(turnoDeRemedios);
    for (const auto *remedio : remedios) {
        (*remedio)();
        ++pasos;
    }
}

/// The lock is kept, so that nothing appears any more.
void deshaz() {
    cerrojo.lock();
    borraElEfimero();
    remedia();
}

/// A disk that no longer answers may take for ever, and hold the lock as long.
/// The user is told all the same, and the end comes as soon as the system lets us.
void espera(const std::future<void> &hecho) {
    constexpr std::chrono::milliseconds paciencia{500}; // while nothing gets done
    unsigned vistos = 0;
    do
        vistos = pasos;
    while (hecho.wait_for(paciencia) != std::future_status::ready && pasos != vistos);
}

[[noreturn]] void cancela(const std::string &despedida) {
    try {
        std::promise<void> promesa;
        const auto hecho = promesa.get_future();
        std::thread([promesa = std::move(promesa)]() mutable {
            deshaz();
            promesa.set_value();
            while (true) // as the owner of the lock
                pause();
        }).detach();
        espera(hecho);
    } catch (const std::exception &) { // no thread to be had
        deshaz();
    }
    diceYa(despedida);
    _exit(1);
}

void vigila(const sigset_t &senales, const std::string &despedida) {
    for (;;) {
        int senal = 0;
        sigwait(&senales, &senal);
        if (empiezaACancelar())
            cancela(despedida);
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
    pasaA(Fase::consagrando);
    const std::lock_guard guarda(cerrojo);
    const char *actual = nombreDelEfimero.data();
    const int resultado = reemplaza
                              ? renameat(carpetaDelEfimero, actual, carpetaDelEfimero, definitivo)
                              : renombraSinPisar(carpetaDelEfimero, actual, definitivo);
    if (resultado == 0)
        nombreDelEfimero[0] = '\0';
    fase = resultado == 0 ? Fase::terminada : Fase::enMarcha;
    fase.notify_all();
    return resultado;
}

AlCancelar::AlCancelar(std::function<void()> remedioDado)
    : remedio(std::move(remedioDado)) {
    const std::lock_guard guarda(turnoDeRemedios);
    remedios.push_back(&remedio);
}

AlCancelar::~AlCancelar() {
    const std::lock_guard guarda(turnoDeRemedios);
    std::erase(remedios, &remedio);
}

void yaNoSeCancela() {
    pasaA(Fase::terminada);
}

} // namespace orcalin
