#include "comun/renombra.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace orcalin {
namespace {

/// Takes the name with an empty file first: for file systems that know neither
/// of the other ways.
int reservaYRenombra(int carpeta, const char *viejo, const char *nuevo) {
    const int fd = openat(carpeta, nuevo, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return -1;
    close(fd);
    if (renameat(carpeta, viejo, carpeta, nuevo) == 0)
        return 0;
    const int porque = errno;
    unlinkat(carpeta, nuevo, 0);
    errno = porque;
    return -1;
}

} // namespace

int renombraSinPisar(int carpeta, const char *viejo, const char *nuevo) {
    if (renameat2(carpeta, viejo, carpeta, nuevo, RENAME_NOREPLACE) == 0)
        return 0;
    // What a file system says that has no such rename, as over a network.
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return -1;
    if (linkat(carpeta, viejo, carpeta, nuevo, 0) == 0)
        return unlinkat(carpeta, viejo, 0);
    // Which links fail for which reason differs; that a name is taken is clear.
    return errno == EEXIST ? -1 : reservaYRenombra(carpeta, viejo, nuevo);
}

} // namespace orcalin
