#pragma once

#include "cifrado/secreto.h"

#include <string>

namespace orcalin {

/// The password in the file at `ruta`: its bytes as they stand, a line end
/// included. Throws Fallo, «hace falta la contraseña», if `ruta` is empty or
/// the file is empty, longer than any password (64 KiB) or cannot be read.
Secreto leeContrasena(const std::string &ruta);

} // namespace orcalin
