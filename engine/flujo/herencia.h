#pragma once

#include <string>
#include <sys/stat.h>

namespace orcalin {

/// Gives the open file `nuevo`, which this user owns or may change as its owner,
/// the mode and the access list of the file `nombre` in `carpeta`, which must be
/// the one that `antes` tells of. `conGrupo` is whether it has its group, too.
/// Whatever of that cannot be had, the new one is not open to anybody whom the
/// old one kept out; to its owner alone if nothing is known of the old one.
void heredaPermisos(int nuevo, int carpeta, const std::string &nombre, const struct stat &antes,
                    bool conGrupo);

} // namespace orcalin
