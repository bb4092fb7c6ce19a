#pragma once

#include "flujo/descriptor.h"

#include <string>
#include <sys/types.h>

namespace orcalin {

/// A file on its way to another name in the same folder. A run that dies in the
/// middle leaves it behind for limpiaProvisionales() of a later one. What tells
/// the two apart is a lock (flock) that its writer holds: unlike a process
/// number in the name it ends with the writer however that dies, means the same
/// in every container, and nobody else comes to own it.
///
/// A file without a name (O_TMPFILE) would leave nothing behind; but it cannot
/// take a name that is in use without having one of its own before, and not
/// every file system has it.
struct Provisional {
    Descriptor fd;      ///< open for both; invalid, with errno set, if it could not be made
    std::string nombre; ///< its name in the folder
};

/// Makes an empty one, locked and ephemeral (see senales.h). `carpeta` is the
/// folder's descriptor.
Provisional creaProvisional(int carpeta, mode_t permisos);

/// A name for something on its way that is no regular file. Nobody uses it.
std::string nombreProvisional();

/// Removes the provisional files of dead runs of this user from a folder. What
/// cannot be looked at or removed stays. `carpeta` is open for reading.
void limpiaProvisionales(int carpeta);

} // namespace orcalin
