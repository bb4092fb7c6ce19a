#include "trabajo.h"

#include "binario.h"
#include "enmarcha.h"
#include "fondo.h"
#include "principal.h"
#include "ruta.h"

#include <cerrno>

using estados::Estado;

Trabajo::Trabajo(std::unique_ptr<Encargo> encargo, EnMarcha &vivos, Publica publica)
    : m_reglas(encargo->reglas())
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
    m_cronometro.empieza();
    if (m_reglas.empieza == Encargo::Empieza::EnFondo) {
        enFondo([esta = shared_from_this()] { esta->entrega(esta->haz()); });
        return true;
    }
    auto fallo = arrancaPaso();
    if (!fallo &&
        colaDeFondo().intenta([esta = shared_from_this()] { esta->entrega(esta->haz()); }))
        return true;
    if (!fallo) { // nobody to follow the child
        fallo = m_encargo->noArranca(EAGAIN);
        m_clave->deja();
        m_hijo.reset();
    }
    m_clave.reset();
    m_encargo->remata(false);
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
        m_cronometro.empieza();
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
        m_clave.emplace(m_encargo->contrasena());
    if (!m_clave->ruta().isEmpty() && m_reglas.cifra)
        argumentos << "--encrypt";
    if (!m_clave->ruta().isEmpty())
        argumentos << "--password-file" << m_clave->ruta();
    auto hijo = std::make_unique<Proceso>(Proceso::Orden{m_motor, std::move(argumentos)});
    if (const int fallo = hijo->arranca(); fallo != 0) {
        if (m_reglas.dejaLaClaveSiNoArranca)
            m_clave->deja();
        return m_encargo->noArranca(fallo);
    }
    const std::lock_guard guardia(m_cerrojo);
    m_hijo = std::move(hijo);
    if (m_cancelado) // meanwhile
        m_hijo->termina();
    return std::nullopt;
}

// None when it went well.
std::optional<QString> Trabajo::siguePaso() {
    Proceso::Lector lector;
    if (m_reglas.cuentaSuAvance)
        lector = [this](const QByteArray &trozo) {
            for (const auto &estado : m_encargo->lee(trozo, m_cronometro.segundos()))
                enPrincipal([esta = shared_from_this(), estado] { esta->ponEstado(estado); });
        };
    const auto final = m_hijo->sigue(m_reglas.lee, lector);
    {
        const std::lock_guard guardia(m_cerrojo);
        m_hijo.reset();
    }
    return juzgaPaso(final);
}

std::optional<QString> Trabajo::juzgaPaso(const Proceso::Final &final) {
    using Exito = Encargo::Exito;
    const bool acepta = m_reglas.exito == Exito::HayAlgo || final.estado == 0;
    const bool basta = m_reglas.exito == Exito::EstadoCero;
    if (!acepta || (!basta && !m_encargo->hay(m_hechos)))
        return m_encargo->queja(m_hechos, final.error);
    m_encargo->recibe(final.salida);
    if (const auto estado = m_encargo->tras(++m_hechos))
        enPrincipal([esta = shared_from_this(), estado] { esta->ponEstado(*estado); });
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
    m_clave.reset();
    m_encargo->remata(!fallo);
    return fallo;
}

void Trabajo::entrega(std::optional<QString> fallo) {
    enPrincipal([esta = shared_from_this(), fallo = std::move(fallo)] {
        esta->cierra(esta->acaba(fallo));
    });
}

Estado Trabajo::acaba(const std::optional<QString> &fallo) {
    const auto encargo = std::move(m_encargo);
    Estado final = encargo->acaba(fallo, m_cronometro.segundos());
    if (fallo && m_cancelado && !m_reglas.laCancelaElMotor)
        return estados::Reposo{};
    return final;
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
