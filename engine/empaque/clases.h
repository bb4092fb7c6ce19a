#pragma once

#include "flujo/marco.h"

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace orcalin {

/// What a regular file of that size is taken for by its name and, where that
/// says nothing, by its first bytes; a large one that is as good as random by
/// what it holds here and there, whatever its name. A wrong guess costs
/// compression, nothing else. Throws Fallo or std::bad_alloc.
Trato tratoDe(const std::string &ruta, mode_t modo, std::uint64_t bytes);

} // namespace orcalin
