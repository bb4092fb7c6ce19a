#include "enmarcha.h"

EnMarcha &EnMarcha::compresiones() {
    static EnMarcha unica;
    return unica;
}

EnMarcha::Turno EnMarcha::entra() {
    m_turnos.insert(++m_ultimo);
    return m_ultimo;
}

void EnMarcha::saleSola(Turno turno, const estados::Estado &final) {
    if (m_turnos.contains(turno))
        emit acabaSola(final);
    sale(turno);
}

void EnMarcha::sale(Turno turno) {
    if (m_turnos.remove(turno) && m_turnos.isEmpty())
        emit acaban();
}
