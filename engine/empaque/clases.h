#pragma once

#include "flujo/marco.h"

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace orcalin {

/// What a regular file of that size is taken for by its path in the archive
/// and, where that says nothing, by its first bytes; a large one that is as good
/// as random by what it holds here and there, whatever its name. `propio` is its
/// name in the open folder `carpeta`. A wrong guess costs compression, nothing
/// else. Throws Fallo or std::bad_alloc.
Trato tratoDe(int carpeta, const std::string &propio, const std::string &ruta, mode_t modo,
              std::uint64_t bytes);

} // namespace orcalin
