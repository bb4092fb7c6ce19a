#include "dosarranques.h"

#include <cstdlib>

DosArranques::DosArranques(Orden orden, Entrega entrega)
    : m_orden(std::move(orden))
    , m_entrega(std::move(entrega)) {}

// What the bus starts waits to be asked, and has nothing to hand over.
std::optional<int> DosArranques::alEmpezar() {
    if (m_orden.modo == Orden::Modo::Ventana)
        m_antes = m_entrega(m_orden.peticion);
    return estadoTras(m_antes);
}

// Two that start at the same time both find nobody, and then only one gets the
// name: the other hands over to it after all. Where one has the name and does
// not answer, this one works alone, without it.
std::optional<int> DosArranques::trasPedirElNombre(bool esNuestro) {
    if (esNuestro)
        return std::nullopt;
    if (m_orden.modo == Orden::Modo::Espera)
        return EXIT_SUCCESS;
    return m_antes == Fin::Nadie ? estadoTras(m_entrega(m_orden.peticion)) : std::nullopt;
}

std::optional<int> DosArranques::estadoTras(Fin fin) {
    switch (fin) {
    case Fin::Hecha:
        return EXIT_SUCCESS;
    case Fin::Rechazada:
        return EXIT_FAILURE;
    case Fin::Nadie:
    case Fin::NoContesta:
        break;
    }
    return std::nullopt;
}
