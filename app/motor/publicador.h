#pragma once

#include "motor.h"
#include "principal.h"

#include <QPointer>

/// How a job's threads reach the Motor that started it, which may be gone by
/// then. Copied freely; made on the main thread.
class Publicador {
public:
    explicit Publicador(Motor *motor)
        : m_motor(motor) {}

    /// Publishes what `hacer` returns, later, on the main thread and in the
    /// order of the calls. `hacer` runs there too, just before; neither happens
    /// for a Motor that is gone. Any thread.
    template<typename Hacer>
    void publica(Hacer hacer) const {
        enPrincipal([motor = m_motor, hacer = std::move(hacer)] {
            if (motor)
                motor->ponEstado(hacer());
        });
    }

    /// The same with the last state of a job, which is at its end with that.
    /// For a Motor that is gone, EnMarcha tells of it.
    template<typename Hacer>
    void acaba(EnMarcha::Turno turno, Hacer hacer) const {
        // In one step, so that nobody can go between being told and the end.
        enPrincipal([motor = m_motor, turno, hacer = std::move(hacer)] {
            const Motor::Estado final = hacer();
            if (!motor) {
                EnMarcha::trabajos().saleSolo(turno, final);
                return;
            }
            motor->ponEstado(final);
            EnMarcha::trabajos().sale(turno);
        });
    }

private:
    QPointer<Motor> m_motor; // looked at on the main thread only
};
