#include "enmarcha.h"

#include <algorithm>

EnMarcha &EnMarcha::todos() {
    static EnMarcha unica;
    return unica;
}

bool EnMarcha::hay(Obra obra) const {
    return std::any_of(m_vivos.begin(), m_vivos.end(), [obra](const auto &trabajo) {
        return trabajo->obra() == obra && !trabajo->cancelado();
    });
}

void EnMarcha::entra(const std::shared_ptr<Trabajo> &trabajo) {
    m_vivos.append(trabajo);
}

void EnMarcha::sale(const Trabajo &trabajo) {
    m_vivos.removeIf([&trabajo](const auto &vivo) { return vivo.get() == &trabajo; });
    emit mengua();
}
