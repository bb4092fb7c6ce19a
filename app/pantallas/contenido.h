#pragma once

#include "plegado.h"
#include "textos/entradas.h"

#include <memory>

/// What an archive holds, ready to be shown and searched. Made once, off the
/// main thread, and never changed.
struct Contenido {
    Entradas entradas;    ///< in the engine's order
    TextoPlegado plegado; ///< their paths, by the same numbers
};
using ContenidoCompartido = std::shared_ptr<const Contenido>;

/// Folds the paths of the entries. Takes long for many; any thread.
ContenidoCompartido preparaContenido(Entradas entradas);

/// Lets go of a content in the background: freeing a million entries would
/// hold up the window. Leaves `contenido` empty.
void sueltaContenido(ContenidoCompartido &contenido);
