#include "empaque/regiones.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::int64_t porBloque = 512; // of st_blocks, whatever the file system's own are

} // namespace

std::vector<Region> regionesDe(int fd, const struct stat &estado) {
    const std::int64_t bytes = estado.st_size;
    std::vector<Region> todo{{0, bytes}};
    // Almost every file is done with here, without asking the system.
    if (estado.st_blocks >= bytes / porBloque)
        return todo;
    std::vector<Region> regiones;
    for (std::int64_t hasta = 0; hasta < bytes;) {
        const std::int64_t desde = lseek(fd, hasta, SEEK_DATA);
        if (desde < 0 && errno != ENXIO)
            return todo;
        if (desde < 0 || desde >= bytes)
            break;
        hasta = lseek(fd, desde, SEEK_HOLE);
        if (hasta <= desde)
            return todo;
        hasta = std::min(hasta, bytes);
        regiones.push_back({desde, hasta});
    }
    // The library writes nonsense for a file that is nothing but a hole.
    if (regiones.empty())
        regiones.push_back({bytes - 1, bytes});
    return regiones;
}

} // namespace orcalin
