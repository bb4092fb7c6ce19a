#pragma once

#include "flujo/flujo.h"
#include "flujo/marco.h"

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace orcalin {

/// Counts bytes that are done with, for whoever shows progress; and tells the
/// threads to give up.
struct Avance {
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<bool> abandonado = false;
};

/// Turns a stretch of the tar stream into a frame. Each thread has its own.
class Compresor {
public:
    Compresor() = default;
    Compresor(const Compresor &) = delete;
    Compresor &operator=(const Compresor &) = delete;
    virtual ~Compresor() = default;

    /// A complete frame of `crudo`, which is not empty. `avance` grows by its
    /// size on the way; once abandoned the result is of no use. Throws Fallo or
    /// std::bad_alloc.
    virtual std::vector<unsigned char> marco(Octetos crudo, Trato trato, Avance &avance) = 0;
};

/// How to make an archive.
struct Compresion {
    Envase envase = Envase::zstd;
    std::size_t marco = 0;  ///< most bytes of the tar stream in a frame
    std::size_t aparte = 0; ///< from this size on a frame is not shared between kinds
    unsigned obreros = 1;   ///< threads that fit into the memory meant for them
    std::function<std::unique_ptr<Compresor>()> compresor;
};

/// zstd at a level from 1 to 22, in frames of 16 MiB.
Compresion compresionHabitual(int nivel);

/// LZMA2 in large frames, with the branch filter that the kind asks for.
Compresion compresionMaxima();

/// As many threads as cores, but no more than fit into the memory meant for
/// compression when each needs `bytes`; at least one.
unsigned obrerosQueCaben(std::uint64_t bytes);

} // namespace orcalin
