#pragma once

namespace orcalin {

/// Gives `viejo` the name `nuevo` in the same folder unless that is taken:
/// -1 then, with errno EEXIST. Other failures are those of rename(2). Nothing else
/// ever stands under `nuevo`. Where neither a rename that spares what is there nor
/// a link is to be had, what takes the name in the last moment is replaced.
int renombraSinPisar(int carpeta, const char *viejo, const char *nuevo);

} // namespace orcalin
