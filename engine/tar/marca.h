#pragma once

#include "flujo/flujo.h"

namespace orcalin {

/// What the tar stream of an archive with an index begins with: a global header
/// that says so, and that every reader of tar passes over.
inline constexpr std::size_t largoMarca = 1024;

/// The mark, largoMarca bytes.
Bloque marcaDeIndice();

/// Whether a tar stream that begins with `inicio` has it.
bool llevaMarca(Octetos inicio);

} // namespace orcalin
