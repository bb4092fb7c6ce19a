#pragma once

#include "cifrado/secreto.h"

#include <string>

namespace orcalin {

/// What opens an encrypted archive: the file with the password (empty: none was
/// given), and whether the key may be remembered for the next run.
struct FicheroContrasena {
    std::string ruta;
    bool seRecuerda = true;
};

/// The password in the file at `ruta`: its bytes as they stand, a line end
/// included. Throws Fallo, «hace falta la contraseña», if `ruta` is empty or
/// the file is empty or longer than any password (64 KiB); «no se puede leer el
/// fichero de la clave: …» if it cannot be read.
Secreto leeContrasena(const std::string &ruta);

} // namespace orcalin
