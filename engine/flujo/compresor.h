#pragma once

#include "flujo/flujo.h"
#include "flujo/marco.h"

#include <functional>
#include <memory>

namespace orcalin {

/// Turns stretches of the tar stream into frames, one after the other. Each
/// thread has its own.
class Compresor {
public:
    Compresor() = default;
    Compresor(const Compresor &) = delete;
    Compresor &operator=(const Compresor &) = delete;
    virtual ~Compresor() = default;

    /// Begins a frame. `primero` is the beginning of what toma() will get; if
    /// `entero`, it is all of it. Throws Fallo or std::bad_alloc.
    virtual void empieza(Octetos primero, bool entero, Trato trato) = 0;

    /// Appends to `sale` as much of the frame as is ready after `bocado`; all
    /// of it if that is the `ultimo`. Throws Fallo or std::bad_alloc.
    virtual void toma(Octetos bocado, bool ultimo, Bloque &sale) = 0;
};

/// How to make an archive.
struct Compresion {
    Envase envase = Envase::zstd;
    std::size_t marco = 0;  ///< most bytes of the tar stream in a frame
    std::size_t aparte = 0; ///< from this size on a frame is not shared between kinds
    std::size_t espera = 0; ///< bytes that may wait, to be compressed or to be written
    unsigned obreros = 1;   ///< threads that fit into the memory meant for them
    std::function<std::unique_ptr<Compresor>()> compresor;
};

/// zstd at a level from 1 to 22, in frames of 16 MiB.
Compresion compresionHabitual(int nivel);

/// LZMA2 in large frames, with the branch filter that the kind asks for, for a
/// stream of about `previstos` bytes. What comes out does not depend on how many
/// threads there are.
Compresion compresionMaxima(std::uint64_t previstos);

/// Whether compression makes `muestra` smaller by more than a fiftieth: the
/// cheapest level tells in a hundredth of the time of a high one. Throws Fallo
/// or std::bad_alloc.
bool encoge(Octetos muestra);

/// As many threads as cores, but no more than fit into the memory meant for
/// compression when each needs `bytes`; at least one.
unsigned obrerosQueCaben(std::uint64_t bytes);

} // namespace orcalin
