#include "contenido.h"

#include "sistema/hilos.h"

ContenidoCompartido preparaContenido(Entradas entradas) {
    auto nuevo = std::make_shared<Contenido>();
    nuevo->entradas = std::move(entradas);
    nuevo->plegado.reserva(nuevo->entradas.cuantas());
    for (size_t i = 0; i < nuevo->entradas.cuantas(); ++i)
        nuevo->plegado.anade(nuevo->entradas.ruta(i));
    return nuevo;
}

void sueltaContenido(ContenidoCompartido &contenido) {
    if (contenido)
        enFondo([viejo = std::exchange(contenido, nullptr)]() mutable { viejo.reset(); });
}
