#pragma once

#include "flujo/flujo.h"

#include <vector>

namespace orcalin {

/// An xz stream with `texto` (at most 108 bytes, a multiple of four) stored as it
/// is, so that it always has the same length and the text the same place in it.
/// Throws Fallo.
std::vector<unsigned char> rotuloXz(Octetos texto);

inline constexpr std::size_t lugarEnRotuloXz = 27;
constexpr std::size_t largoRotuloXz(std::size_t texto) {
    return texto + 52;
}

} // namespace orcalin
