#include "seleccion.h"

void Seleccion::estrena(size_t entradas) {
    m_marcas.assign(entradas, false);
    m_cuantas = 0;
}

std::vector<uint32_t> Seleccion::todas() const {
    std::vector<uint32_t> indices;
    indices.reserve(m_cuantas);
    for (size_t i = 0; i < m_marcas.size() && indices.size() < m_cuantas; ++i) {
        if (m_marcas[i])
            indices.push_back(static_cast<uint32_t>(i));
    }
    return indices;
}

void Seleccion::vacia() {
    if (m_cuantas > 0)
        estrena(m_marcas.size());
}

void Seleccion::pon(size_t indice, bool dentro) {
    if (m_marcas[indice] == dentro)
        return;
    m_marcas[indice] = dentro;
    dentro ? ++m_cuantas : --m_cuantas;
}

void Seleccion::anade(std::span<const uint32_t> indices) {
    for (const uint32_t indice : indices)
        pon(indice, true);
}
