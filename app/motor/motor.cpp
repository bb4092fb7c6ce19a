#include "motor.h"

#include "fondo.h"
#include "proceso.h"
#include "ruta.h"
#include "tamano.h"
#include "visor.h"

Motor::Motor(QObject *padre)
    : QObject(padre) {}

Motor::~Motor() = default;

void Motor::ponEstado(Estado estado) {
    m_estado = std::move(estado);
    emit estadoCambia();
}

void Motor::limpiaTemporales() {
    const QByteArray carpeta = visor::carpeta();
    visor::aparta(carpeta);
    enFondo([carpeta] { visor::limpiaApartadas(carpeta); });
}

qint64 Motor::tamano(const QUrl &de) {
    return pesoDe(ruta::nativa(de));
}

void Motor::cancelar() {
    if (m_proceso)
        m_proceso->termina();
    m_proceso.reset();
    EnMarcha::trabajos().sale(m_turno);
    ponEstado(Reposo{});
}
