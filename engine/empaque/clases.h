#pragma once

#include "flujo/marco.h"

#include <string>
#include <sys/types.h>

namespace orcalin {

/// What a regular file is taken for by its name and, where that says nothing,
/// by its first bytes. A wrong guess costs compression, nothing else.
Trato tratoDe(const std::string &ruta, mode_t modo);

} // namespace orcalin
