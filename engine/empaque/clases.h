#pragma once

#include "flujo/marco.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace orcalin {

/// What a regular file is taken for by its name and, where that says nothing,
/// by its first bytes. A wrong guess costs compression, nothing else.
Trato tratoDe(const std::string &ruta, mode_t modo);

/// What follows the last dot of the path's last component, in lower case;
/// empty for a name that has none, or only a leading one.
std::string extension(std::string_view ruta);

} // namespace orcalin
