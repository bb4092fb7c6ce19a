#include "seguimiento.h"

#include "motor/motor.h"
#include "puertos/escritorio.h"

Seguimiento::Seguimiento(Motor &motor, Escritorio &escritorio, std::function<Final()> final)
    : m_motor(motor)
    , m_escritorio(escritorio)
    , m_final(std::move(final)) {
    connect(&motor, &Motor::estadoCambia, this, &Seguimiento::mira);
}

Seguimiento::~Seguimiento() {
    if (m_trabajando)
        m_escritorio.avanza(std::nullopt);
}

void Seguimiento::mira() {
    if (const auto *trabajando = std::get_if<Motor::Trabajando>(&m_motor.estado())) {
        m_trabajando = true;
        m_escritorio.avanza(trabajando->pct);
        return;
    }
    if (!std::exchange(m_trabajando, false))
        return;
    m_escritorio.avanza(std::nullopt);
    if (std::holds_alternative<Motor::Reposo>(m_motor.estado()))
        return;
    const Final final = m_final();
    m_escritorio.avisa(Aviso::SiNoMira, final.titulo, final.texto);
}
