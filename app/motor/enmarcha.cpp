#include "enmarcha.h"

EnMarcha &EnMarcha::compresiones() {
    static EnMarcha unica;
    return unica;
}

EnMarcha::Turno EnMarcha::entra() {
    m_turnos.insert(++m_ultimo);
    return m_ultimo;
}

void EnMarcha::sale(Turno turno) {
    if (m_turnos.remove(turno) && m_turnos.isEmpty())
        emit acaban();
}
