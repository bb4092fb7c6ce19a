#include "hijo.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <vector>

extern "C" { // the header of glibc 2.36 does not say so itself
#include <sys/pidfd.h>
}

using namespace std::chrono_literals;

namespace {

// How long words wait for more that belong to them, or for the child's end.
constexpr auto kReposo = 40ms;
// A large child on a busy machine is long in dying after it has said why.
constexpr auto kUltimasPalabras = 1s;

// The attributes and actions of one posix_spawn call.
class Preparativos {
public:
    Preparativos() {
        posix_spawn_file_actions_init(&m_acciones);
        posix_spawnattr_init(&m_atributos);
    }
    ~Preparativos() {
        posix_spawnattr_destroy(&m_atributos);
        posix_spawn_file_actions_destroy(&m_acciones);
    }
    Preparativos(const Preparativos &) = delete;
    Preparativos &operator=(const Preparativos &) = delete;

    int redirige(int salida, int error) {
        int fallo = posix_spawn_file_actions_adddup2(&m_acciones, salida, STDOUT_FILENO);
        if (fallo == 0)
            fallo = posix_spawn_file_actions_adddup2(&m_acciones, error, STDERR_FILENO);
        // Ours are close-on-exec; libraries are not all so careful.
        if (fallo == 0)
            fallo = posix_spawn_file_actions_addclosefrom_np(&m_acciones, STDERR_FILENO + 1);
        return fallo;
    }

    // Neither a blocked signal nor an ignored one of ours may keep the engine
    // from hearing the terminate request.
    int limpiaSenales() {
        sigset_t ninguna;
        sigset_t todas;
        sigemptyset(&ninguna);
        sigfillset(&todas);
        int fallo = posix_spawnattr_setsigmask(&m_atributos, &ninguna);
        if (fallo == 0)
            fallo = posix_spawnattr_setsigdefault(&m_atributos, &todas);
        if (fallo == 0)
            fallo = posix_spawnattr_setflags(&m_atributos,
                                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        return fallo;
    }

    int lanza(pid_t &pid, const Proceso::Orden &orden) {
        std::vector<char *> argv;
        argv.push_back(const_cast<char *>(orden.ejecutable.constData()));
        for (const QByteArray &argumento : orden.argumentos)
            argv.push_back(const_cast<char *>(argumento.constData()));
        argv.push_back(nullptr);
        return posix_spawn(&pid, orden.ejecutable.constData(), &m_acciones, &m_atributos,
                           argv.data(), environ);
    }

private:
    posix_spawn_file_actions_t m_acciones{};
    posix_spawnattr_t m_atributos{};
};

int espera(std::array<pollfd, 2> &vigilados) {
    int listos = 0;
    do {
        listos = ::poll(vigilados.data(), vigilados.size(), -1);
    } while (listos < 0 && errno == EINTR);
    return listos;
}

// Whether a line in it begins like the engine's last one.
bool traeDespedida(const QByteArray &trozo) {
    return trozo.startsWith("Error") || trozo.contains("\nError");
}

} // namespace

int Proceso::Hijo::arranca(const Orden &orden) {
    if (!m_error.abre() || !m_salida.abre())
        return errno;
    Preparativos preparativos;
    int fallo = preparativos.redirige(m_salida.escritura.numero(), m_error.escritura.numero());
    if (fallo == 0)
        fallo = preparativos.limpiaSenales();
    pid_t pid = -1;
    if (fallo == 0)
        fallo = preparativos.lanza(pid, orden);
    if (fallo != 0)
        return fallo;
    m_error.escritura.cierra();
    m_salida.escritura.cierra();
    m_pidfd = Descriptor(pidfd_open(pid, 0));
    if (m_pidfd)
        return 0;
    fallo = errno;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    return fallo;
}

bool Proceso::Hijo::acabaAntesDe(std::chrono::milliseconds plazo) const {
    pollfd fin{m_pidfd.numero(), POLLIN, 0};
    return ::poll(&fin, 1, static_cast<int>(plazo.count())) > 0;
}

// Returns the last chunk, if the child ended soon after it or before it was read.
QByteArray Proceso::Hijo::reparteError(const Lector &lector) {
    using Reloj = std::chrono::steady_clock;
    QByteArray ultimo;
    Reloj::time_point cuando;
    while (true) {
        std::array<pollfd, 2> vigilados{
            {{m_pidfd.numero(), POLLIN, 0}, {m_error.lectura.numero(), POLLIN, 0}}};
        if (espera(vigilados) < 0 || vigilados[0].revents != 0 || acabaAntesDe(kReposo))
            break;
        QByteArray trozo = leeLoQueHay(m_error.lectura);
        if (trozo.isEmpty()) {
            m_error.lectura.cierra(); // closed by the child, which lives on
            continue;
        }
        cuando = Reloj::now();
        if (traeDespedida(trozo) && acabaAntesDe(kUltimasPalabras))
            return trozo;
        lector(trozo);
        ultimo = trozo;
    }
    return Reloj::now() - cuando < kUltimasPalabras ? ultimo : QByteArray();
}

QByteArray Proceso::Hijo::leeHastaElFin(const Tuberia &tuberia) const {
    QByteArray todo;
    bool vive = true;
    while (vive) {
        std::array<pollfd, 2> vigilados{
            {{m_pidfd.numero(), POLLIN, 0}, {tuberia.lectura.numero(), POLLIN, 0}}};
        if (espera(vigilados) < 0)
            break;
        // Looked at before reading: what an ended child wrote is all there.
        vive = vigilados[0].revents == 0;
        const QByteArray trozo = leeLoQueHay(tuberia.lectura);
        if (trozo.isEmpty())
            break;
        todo += trozo;
    }
    return todo;
}

Proceso::Final Proceso::Hijo::sigue(const Lector &lector) {
    Final final;
    if (lector)
        final.error = reparteError(lector);
    final.error += leeHastaElFin(m_error);
    final.estado = recoge();
    m_error.lectura.cierra();
    m_salida.lectura.cierra();
    return final;
}

Proceso::Corrida Proceso::Hijo::acompana(Lee que) {
    Corrida corrida;
    if (que == Lee::SalidaYError)
        corrida.salida = leeHastaElFin(m_salida);
    corrida.error = leeHastaElFin(m_error);
    corrida.estado = recoge();
    return corrida;
}

int Proceso::Hijo::recoge() {
    siginfo_t dato{};
    int hecho = 0;
    do {
        hecho = ::waitid(P_PIDFD, static_cast<id_t>(m_pidfd.numero()), &dato, WEXITED);
    } while (hecho < 0 && errno == EINTR);
    const std::lock_guard guardia(m_cerrojo);
    m_pidfd.cierra();
    if (hecho == 0 && dato.si_code == CLD_EXITED)
        return dato.si_status;
    return 128 + dato.si_status;
}

void Proceso::Hijo::senala(int numero) {
    const std::lock_guard guardia(m_cerrojo);
    if (m_pidfd)
        (void)pidfd_send_signal(m_pidfd.numero(), numero, nullptr, 0);
}

// One that is stopped hears nothing else before it goes on.
void Proceso::Hijo::pideFin() {
    senala(SIGTERM);
    senala(SIGCONT);
}

void Proceso::Hijo::descarta() {
    senala(SIGKILL);
    recoge();
}
