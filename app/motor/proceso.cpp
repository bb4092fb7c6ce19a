#include "proceso.h"

#include "hijo.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <system_error>
#include <thread>
#include <vector>

namespace {

// The children whose ends have not been handled yet.
template<typename Hijo>
class Vivos {
public:
    // Never destroyed: a child's thread may outlive the static objects.
    static Vivos &todos() {
        static auto *unico = new Vivos;
        return *unico;
    }

    void entra(const std::shared_ptr<Hijo> &hijo) {
        const std::lock_guard guardia(m_cerrojo);
        m_hijos.push_back(hijo);
        if (m_cerrado)
            hijo->senala(SIGKILL);
    }

    void sale(const std::shared_ptr<Hijo> &hijo) {
        const std::lock_guard guardia(m_cerrojo);
        std::erase(m_hijos, hijo);
        m_cambio.notify_all();
    }

    // To all there are. Who comes later gets no chance: the application is leaving.
    template<typename Hacer>
    void cierra(Hacer hacer) {
        const std::lock_guard guardia(m_cerrojo);
        m_cerrado = true;
        for (const auto &hijo : m_hijos)
            hacer(*hijo);
    }

    bool espera(std::chrono::milliseconds plazo) {
        std::unique_lock guardia(m_cerrojo);
        return m_cambio.wait_for(guardia, plazo, [this] { return m_hijos.empty(); });
    }

private:
    std::mutex m_cerrojo;
    std::condition_variable m_cambio;
    std::vector<std::shared_ptr<Hijo>> m_hijos;
    bool m_cerrado = false;
};

} // namespace

Proceso::Proceso(Orden orden)
    : m_orden(std::move(orden)) {}

Proceso::~Proceso() = default;

int Proceso::lanza(Lector lector, AlTerminar alTerminar) {
    auto hijo = std::make_shared<Hijo>();
    if (const int fallo = hijo->arranca(m_orden); fallo != 0)
        return fallo;
    auto &vivos = Vivos<Hijo>::todos();
    vivos.entra(hijo);
    try {
        std::thread([hijo, lector = std::move(lector), alTerminar = std::move(alTerminar)] {
            alTerminar(hijo->sigue(lector));
            Vivos<Hijo>::todos().sale(hijo);
        }).detach();
    } catch (const std::system_error &) {
        hijo->descarta();
        vivos.sale(hijo);
        return EAGAIN;
    }
    m_hijo = std::move(hijo);
    return 0;
}

Proceso::Corrida Proceso::corre(const Orden &orden, Lee que) {
    auto hijo = std::make_shared<Hijo>();
    if (const int fallo = hijo->arranca(orden); fallo != 0)
        return {fallo, 0, {}, {}};
    auto &vivos = Vivos<Hijo>::todos();
    vivos.entra(hijo);
    Corrida corrida = hijo->acompana(que);
    vivos.sale(hijo);
    return corrida;
}

void Proceso::termina() {
    if (m_hijo)
        m_hijo->pideFin();
}

void Proceso::terminaTodos(std::chrono::milliseconds gracia) {
    auto &vivos = Vivos<Hijo>::todos();
    vivos.cierra([](Hijo &hijo) { hijo.pideFin(); });
    if (vivos.espera(gracia))
        return;
    vivos.cierra([](Hijo &hijo) { hijo.senala(SIGKILL); });
    vivos.espera(gracia);
}
