#pragma once

#include <sys/stat.h>
#include <tuple>

namespace orcalin {

/// What tells one file's content from another's while it is packed. The inode's
/// number alone does not: a file system may use it again at once, and a file can
/// be written to between two looks at it, either of which gives a new ctime.
using Identidad = std::tuple<dev_t, ino_t, off_t, time_t, long>;

inline Identidad identidadDe(const struct stat &estado) {
    return {estado.st_dev, estado.st_ino, estado.st_size, estado.st_ctim.tv_sec,
            estado.st_ctim.tv_nsec};
}

} // namespace orcalin
