#pragma once

#include "flujo/flujo.h"

#include <vector>

namespace orcalin {

/// What the trailer holds, in any archive.
inline constexpr std::size_t largoRotulo = 64;

/// An xz stream with `texto` (of largoRotulo bytes) stored as it is, so that it
/// always has the same length and the text the same place in it. Throws Fallo.
std::vector<unsigned char> rotuloXz(Octetos texto);

inline constexpr std::size_t largoRotuloXz = 116;
inline constexpr std::size_t lugarEnRotuloXz = 27;

} // namespace orcalin
