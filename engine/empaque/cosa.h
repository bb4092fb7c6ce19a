#pragma once

#include "flujo/descriptor.h"

#include <string>
#include <sys/stat.h>

namespace orcalin {

/// Something to pack, open: all that is told of it is told of the same thing,
/// whatever gets its name meanwhile.
struct Cosa {
    Descriptor fd;
    bool leible = false; ///< else the descriptor stands for the thing and is no more (O_PATH)
    struct stat estado {};
};

/// Opens what should be of the kind `clase` (S_IFREG, S_IFDIR, S_IFLNK) and takes
/// its status, which may tell another kind. What it is may have changed since it
/// was planned: hence not following links, and not waiting for the other end of
/// a pipe. For a file that another program has reserved it waits some seconds, and
/// no longer. False with errno set, EAGAIN for that one.
bool abre(int carpeta, const char *nombre, mode_t clase, Cosa &cosa);

/// Where a symbolic link leads; empty, with errno set, if that cannot be read.
std::string adonde(const Cosa &enlace);

} // namespace orcalin
