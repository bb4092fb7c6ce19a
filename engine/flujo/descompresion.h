#pragma once

#include "flujo/flujo.h"
#include "flujo/marco.h"

#include <memory>
#include <optional>

namespace orcalin {

/// What the frames hold of which `comprimida` is made. Throws std::bad_alloc.
std::unique_ptr<Fuente> descomprime(Envase envase, std::unique_ptr<Fuente> comprimida);

/// Whether `tar` holds just `crudo` bytes, with that sum if there is one. What
/// cannot be read does not; without memory std::bad_alloc is thrown.
bool seLeeComo(Fuente &tar, std::uint64_t crudo, const std::optional<Suma> &suma);

} // namespace orcalin
