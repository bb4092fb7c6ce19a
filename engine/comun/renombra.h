#pragma once

namespace orcalin {

/// Gives `viejo` the name `nuevo` in the same folder unless that is taken:
/// -1 then, with errno EEXIST. Other failures are those of rename(2).
int renombraSinPisar(int carpeta, const char *viejo, const char *nuevo);

} // namespace orcalin
