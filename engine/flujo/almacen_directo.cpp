#include "flujo/almacen_directo.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t alineacion = 4 * kibi; // of places and memory; more than any disk asks for
constexpr std::size_t largoTramo = mebi;

} // namespace

struct AlmacenDirecto::Memoria {
    alignas(alineacion) std::array<unsigned char, largoTramo> bytes;
    std::uint64_t desde = 0;
    std::size_t hay = 0;
};

AlmacenDirecto::AlmacenDirecto(Descriptor fichero)
    : fd(std::move(fichero))
    , directo(fcntl(fd.numero(), F_SETFL, O_DIRECT) == 0)
    , memoria(new Memoria) {}

AlmacenDirecto::~AlmacenDirecto() = default;

std::uint64_t AlmacenDirecto::largo() const {
    struct stat estado {};
    if (fstat(fd.numero(), &estado) != 0)
        falla("no se puede leer el archivo", errno);
    return static_cast<std::uint64_t>(estado.st_size);
}

std::size_t AlmacenDirecto::lee(std::uint64_t desde, Hueco hueco) const {
    std::size_t total = 0;
    while (total < hueco.size()) {
        const auto lugar = desde + total;
        // What was the end of the file when it was read may have grown since.
        if (lugar < memoria->desde || lugar >= memoria->desde + memoria->hay)
            trae(lugar);
        const auto salto = lugar - memoria->desde;
        if (salto >= memoria->hay)
            break;
        const auto parte = std::min(memoria->hay - salto, hueco.size() - total);
        std::copy_n(memoria->bytes.begin() + static_cast<std::ptrdiff_t>(salto), parte,
                    hueco.begin() + static_cast<std::ptrdiff_t>(total));
        total += parte;
    }
    return total;
}

void AlmacenDirecto::trae(std::uint64_t desde) const {
    memoria->desde = desde - desde % alineacion;
    memoria->hay = 0;
    for (ssize_t leidos = -1; leidos < 0;) {
        if (!directo)
            olvida(memoria->desde);
        leidos = pread(fd.numero(), memoria->bytes.data(), memoria->bytes.size(),
                       static_cast<off_t>(memoria->desde));
        memoria->hay = static_cast<std::size_t>(std::max<ssize_t>(leidos, 0));
        // Some file systems only say here that they do not read directly.
        const bool sinRodeos = leidos < 0 && errno == EINVAL && directo;
        if (sinRodeos)
            directo = fcntl(fd.numero(), F_SETFL, 0) != 0;
        else if (leidos < 0 && errno != EINTR)
            falla("no se puede leer el archivo", errno);
    }
}

void AlmacenDirecto::olvida(std::uint64_t desde) const {
    constexpr unsigned todo =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    const auto donde = static_cast<off_t>(desde);
    sync_file_range(fd.numero(), donde, largoTramo, todo);
    posix_fadvise(fd.numero(), donde, largoTramo, POSIX_FADV_DONTNEED);
}

} // namespace orcalin
