#include "trabajo.h"

#include "encargo.h"
#include "enmarcha.h"
#include "hijos/proceso.h"
#include "lugares/binario.h"
#include "lugares/clave.h"
#include "lugares/ruta.h"
#include "sistema/hilos.h"

#include <cerrno>

using estados::Estado;
using Reloj = std::chrono::steady_clock;

Trabajo::Trabajo(std::unique_ptr<Encargo> encargo, EnMarcha &vivos, Publica publica)
    : m_obra(encargo->reglas().obra)
    , m_archivo(encargo->archivo())
    , m_vivos(&vivos)
    , m_publica(std::move(publica))
    , m_encargo(std::move(encargo)) {}

Trabajo::~Trabajo() = default;

bool Trabajo::empieza() {
    if (const auto porque = impedimento()) {
        ponEstado(acaba(porque));
        return false;
    }
    m_vivos->entra(shared_from_this());
    ponEstado(m_encargo->alEmpezar());
    m_inicio = Reloj::now();
    if (m_encargo->reglas().empieza == Encargo::Empieza::EnFondo) {
        enFondo([esta = shared_from_this()] { esta->entrega(esta->haz()); });
        return true;
    }
    auto fallo = arrancaPaso();
    if (!fallo &&
        colaDeFondo().intenta([esta = shared_from_this()] { esta->entrega(esta->haz()); }))
        return true;
    if (!fallo) { // nobody to follow the child
        m_hijo.reset();
        fallo = noArranca(EAGAIN);
    }
    remata(false);
    cierra(acaba(fallo));
    return true;
}

void Trabajo::corre() {
    auto fallo = impedimento();
    if (!fallo) {
        enPrincipal([esta = shared_from_this()] {
            if (esta->m_vivos)
                esta->m_vivos->entra(esta);
        });
        m_inicio = Reloj::now();
        fallo = haz();
    }
    enPrincipal([esta = shared_from_this(), final = acaba(fallo)] { esta->cierra(final); });
}

void Trabajo::cancela() {
    if (m_cancelado.exchange(true))
        return;
    {
        const std::lock_guard guardia(m_cerrojo);
        if (m_hijo)
            m_hijo->termina();
    }
    if (m_vivos)
        emit m_vivos->mengua();
}

// Before anything is shown or written.
std::optional<QString> Trabajo::impedimento() {
    const auto motor = buscaBinario();
    if (!motor)
        return m_encargo->sinMotor();
    m_motor = ruta::nativa(*motor);
    return m_encargo->antes();
}

// None when it runs. Without a word for the user when the job was cancelled.
std::optional<QString> Trabajo::arrancaPaso() {
    if (m_cancelado)
        return QString();
    auto paso = m_encargo->paso(m_hechos);
    if (auto *porque = std::get_if<QString>(&paso))
        return std::move(*porque);
    auto &argumentos = std::get<Encargo::Argumentos>(paso);
    if (!m_clave)
        m_clave = std::make_unique<FicheroDeClave>(m_encargo->contrasena());
    if (!m_clave->ruta().isEmpty() && m_encargo->reglas().cifra)
        argumentos << "--encrypt";
    if (!m_clave->ruta().isEmpty())
        argumentos << "--password-file" << m_clave->ruta();
    auto hijo = std::make_unique<Proceso>(Proceso::Orden{m_motor, std::move(argumentos)});
    if (const int fallo = hijo->arranca(); fallo != 0)
        return noArranca(fallo);
    const std::lock_guard guardia(m_cerrojo);
    m_hijo = std::move(hijo);
    if (m_cancelado) // meanwhile
        m_hijo->termina();
    return std::nullopt;
}

QString Trabajo::noArranca(int fallo) {
    if (m_encargo->reglas().dejaLaClaveSiNoArranca)
        m_clave->deja();
    return m_encargo->noArranca(fallo);
}

// None when it went well.
std::optional<QString> Trabajo::siguePaso() {
    Proceso::Lector lector;
    if (m_encargo->reglas().cuentaSuAvance)
        lector = [this](const QByteArray &trozo) {
            for (const auto &estado : m_encargo->lee(trozo, segundos()))
                enPrincipal([esta = shared_from_this(), estado] { esta->ponEstado(estado); });
        };
    const auto final = m_hijo->sigue(m_encargo->reglas().salida, lector);
    {
        const std::lock_guard guardia(m_cerrojo);
        m_hijo.reset();
    }
    if (final.sobra)
        return m_encargo->noCabe();
    return juzgaPaso(final.estado, final.salida, final.error);
}

std::optional<QString> Trabajo::juzgaPaso(int estado, const QByteArray &salida,
                                          const QByteArray &error) {
    using Exito = Encargo::Exito;
    const Exito exito = m_encargo->reglas().exito;
    const bool acepta = exito == Exito::HayAlgo || estado == 0;
    const bool basta = exito == Exito::EstadoCero;
    if (!acepta || (!basta && !m_encargo->hay(m_hechos)))
        return m_encargo->queja(m_hechos, error);
    if (auto porque = m_encargo->recibe(salida))
        return porque;
    if (const auto avance = m_encargo->tras(++m_hechos))
        enPrincipal([esta = shared_from_this(), avance] { esta->ponEstado(*avance); });
    return std::nullopt;
}

// All runs that are left, the first of them perhaps under way. Why it was not
// all of them, or none.
std::optional<QString> Trabajo::haz() {
    std::optional<QString> fallo;
    while (!fallo && m_hechos < m_encargo->pasos()) {
        if (!m_hijo)
            fallo = arrancaPaso();
        if (!fallo)
            fallo = siguePaso();
    }
    remata(!fallo);
    return fallo;
}

void Trabajo::remata(bool bien) {
    m_clave.reset();
    m_encargo->remata(bien);
}

void Trabajo::entrega(std::optional<QString> fallo) {
    enPrincipal([esta = shared_from_this(), fallo = std::move(fallo)] {
        esta->cierra(esta->acaba(fallo));
    });
}

Estado Trabajo::acaba(const std::optional<QString> &fallo) {
    const auto encargo = std::move(m_encargo);
    Estado final = encargo->acaba(fallo, segundos());
    if (fallo && m_cancelado && !encargo->reglas().laCancelaElMotor)
        return estados::Reposo{};
    return final;
}

double Trabajo::segundos() const {
    return std::chrono::duration<double>(Reloj::now() - m_inicio).count();
}

bool Trabajo::ponEstado(const Estado &estado) {
    m_estado = estado;
    return !m_publica || m_publica(estado);
}

// In one turn of the event loop, so that nobody can go between the last state
// and the end.
void Trabajo::cierra(const Estado &final) {
    const bool loVeAlguien = ponEstado(final);
    if (m_vivos && !loVeAlguien && !m_cancelado)
        emit m_vivos->acabaSolo(*this);
    if (m_vivos)
        m_vivos->sale(*this);
}
