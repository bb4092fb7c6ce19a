#include "contenido.h"

#include "sistema/hilos.h"

ContenidoCompartido preparaContenido(const QList<Entrada> &entradas) {
    auto nuevo = std::make_shared<Contenido>();
    nuevo->plegado.reserva(static_cast<size_t>(entradas.size()));
    for (const Entrada &entrada : entradas)
        nuevo->plegado.anade(entrada.ruta);
    nuevo->entradas = Entradas(entradas);
    return nuevo;
}

void sueltaContenido(ContenidoCompartido &contenido) {
    if (contenido)
        enFondo([viejo = std::exchange(contenido, nullptr)]() mutable { viejo.reset(); });
}
