#include "comun/renombra.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orcalin {
namespace {

/// For file systems that know neither of the other ways. Taking the name with an
/// empty file first would be no safer: another's archive may replace that one, too.
int miraYRenombra(int carpeta, const char *viejo, const char *nuevo) {
    struct stat estado {};
    if (fstatat(carpeta, nuevo, &estado, AT_SYMLINK_NOFOLLOW) == 0)
        errno = EEXIST;
    else if (errno == ENOENT)
        return renameat(carpeta, viejo, carpeta, nuevo);
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
    return errno == EEXIST ? -1 : miraYRenombra(carpeta, viejo, nuevo);
}

} // namespace orcalin
