#include "proceso.h"

#include "nacimiento.h"

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <vector>

extern "C" { // the header of glibc 2.36 does not say so itself
#include <sys/pidfd.h>
}

using namespace std::chrono_literals;

namespace {

// No engine has more to say that anybody would read.
constexpr qsizetype kMaxError = qsizetype(64) << 20;
// How long words wait for more that belong to them, or for the child's end.
constexpr auto kReposo = 40ms;
// A large child on a busy machine is long in dying after it has said why.
constexpr auto kUltimasPalabras = 1s;

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

// The children of this process that are not collected yet.
class Proceso::Vivos {
public:
    // Never destroyed: a thread that follows one may outlive the static objects.
    static Vivos &todos() {
        static auto *unico = new Vivos;
        return *unico;
    }

    void entra(Proceso *hijo) {
        const std::lock_guard guardia(m_cerrojo);
        m_hijos.push_back(hijo);
        if (m_cerrado)
            hijo->senala(SIGKILL);
    }

    void sale(Proceso *hijo) {
        const std::lock_guard guardia(m_cerrojo);
        std::erase(m_hijos, hijo);
        m_cambio.notify_all();
    }

    // To all there are. Who comes later gets no chance: the application is leaving.
    template<typename Hacer>
    void cierra(Hacer hacer) {
        const std::lock_guard guardia(m_cerrojo);
        m_cerrado = true;
        for (Proceso *hijo : m_hijos)
            hacer(*hijo);
    }

    bool cerrado() {
        const std::lock_guard guardia(m_cerrojo);
        return m_cerrado;
    }

    bool espera(std::chrono::milliseconds plazo) {
        std::unique_lock guardia(m_cerrojo);
        return m_cambio.wait_for(guardia, plazo, [this] { return m_hijos.empty(); });
    }

private:
    std::mutex m_cerrojo;
    std::condition_variable m_cambio;
    std::vector<Proceso *> m_hijos;
    bool m_cerrado = false;
};

Proceso::Proceso(Orden orden)
    : m_orden(std::move(orden)) {}

Proceso::~Proceso() {
    if (m_pidfd) {
        senala(SIGKILL);
        recoge();
    }
}

int Proceso::arranca() {
    if (!m_error.abre() || !m_salida.abre())
        return errno;
    pid_t pid = -1;
    int fallo = nace(pid, m_orden.ejecutable, m_orden.argumentos, m_salida.escritura.numero(),
                     m_error.escritura.numero());
    if (fallo != 0)
        return fallo;
    m_error.escritura.cierra();
    m_salida.escritura.cierra();
    m_pidfd = Descriptor(pidfd_open(pid, 0));
    if (m_pidfd) {
        Vivos::todos().entra(this);
        return 0;
    }
    fallo = errno;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    return fallo;
}

bool Proceso::acabaAntesDe(std::chrono::milliseconds plazo) const {
    pollfd fin{m_pidfd.numero(), POLLIN, 0};
    return ::poll(&fin, 1, static_cast<int>(plazo.count())) > 0;
}

// Returns the last chunk, if the child ended soon after it or before it was read.
QByteArray Proceso::reparteError(const Lector &lector) {
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

// What does not fit is read all the same, so that the child can end.
QByteArray Proceso::leeHastaElFin(const Tuberia &tuberia, qsizetype maximo,
                                  const std::function<void()> &siSobra) const {
    QByteArray todo;
    bool sobra = false;
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
        if (!sobra && trozo.size() > maximo - todo.size()) {
            sobra = true;
            siSobra();
        }
        if (!sobra)
            todo += trozo;
    }
    return todo;
}

Proceso::Final Proceso::sigue(qsizetype maximo, const Lector &lector) {
    Final final;
    if (maximo > 0)
        final.salida = leeHastaElFin(m_salida, maximo, [&] {
            final.sobra = true;
            termina();
        });
    if (lector)
        final.error = reparteError(lector);
    final.error += leeHastaElFin(m_error, kMaxError, [] {});
    final.estado = recoge();
    return final;
}

int Proceso::recoge() {
    siginfo_t dato{};
    int hecho = 0;
    do {
        hecho = ::waitid(P_PIDFD, static_cast<id_t>(m_pidfd.numero()), &dato, WEXITED);
    } while (hecho < 0 && errno == EINTR);
    Vivos::todos().sale(this);
    const std::lock_guard guardia(m_cerrojo);
    m_pidfd.cierra();
    if (hecho == 0 && dato.si_code == CLD_EXITED)
        return dato.si_status;
    return 128 + dato.si_status;
}

void Proceso::senala(int numero) {
    const std::lock_guard guardia(m_cerrojo);
    if (m_pidfd)
        (void)pidfd_send_signal(m_pidfd.numero(), numero, nullptr, 0);
}

// One that is stopped hears nothing else before it goes on.
void Proceso::termina() {
    senala(SIGTERM);
    senala(SIGCONT);
}

void Proceso::terminaTodos(std::chrono::milliseconds gracia) {
    auto &vivos = Vivos::todos();
    vivos.cierra([](Proceso &hijo) { hijo.termina(); });
    if (vivos.espera(gracia))
        return;
    vivos.cierra([](Proceso &hijo) { hijo.senala(SIGKILL); });
    vivos.espera(gracia);
}

bool Proceso::seVanTodos() {
    return Vivos::todos().cerrado();
}
