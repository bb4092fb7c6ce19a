#include "enmarcha.h"

#include <algorithm>

EnMarcha &EnMarcha::trabajos() {
    static EnMarcha unica;
    return unica;
}

bool EnMarcha::hay(Obra obra) const {
    return std::any_of(m_trabajos.begin(), m_trabajos.end(),
                       [obra](const Trabajo &trabajo) { return trabajo.obra == obra; });
}

EnMarcha::Turno EnMarcha::entra(const Trabajo &trabajo) {
    m_trabajos.insert(++m_ultimo, trabajo);
    return m_ultimo;
}

void EnMarcha::saleSolo(Turno turno, const estados::Estado &final) {
    if (const auto trabajo = m_trabajos.constFind(turno); trabajo != m_trabajos.cend())
        emit acabaSolo(Trabajo(*trabajo), final);
    sale(turno);
}

void EnMarcha::sale(Turno turno) {
    if (m_trabajos.remove(turno))
        emit mengua();
}
