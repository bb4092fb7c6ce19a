#include "empaque/contenido.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 128 * kibi;

/// For one file after the other.
std::vector<unsigned char> &bloque() {
    static std::vector<unsigned char> unico(largoBloque);
    return unico;
}

std::string queja(int numero) {
    if (escasea(numero))
        throw std::system_error(numero, std::generic_category());
    return causa(numero);
}

bool igual(const timespec &a, const timespec &b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// Reading a file changes none of these.
bool igual(const struct stat &a, const struct stat &b) {
    return a.st_size == b.st_size && igual(a.st_mtim, b.st_mtim) && igual(a.st_ctim, b.st_ctim);
}

void guardaCeros(EscritorTar &tar, std::int64_t bytes) {
    static const std::vector<unsigned char> ceros(largoBloque);
    while (bytes > 0) {
        const auto parte = Octetos(ceros).first(std::min<std::uint64_t>(bytes, largoBloque));
        tar.datos(parte);
        bytes -= static_cast<std::int64_t>(parte.size());
    }
}

} // namespace

Contenido::Contenido(const Cosa &fichero)
    : cosa(fichero)
    , bytes(static_cast<std::uint64_t>(fichero.estado.st_size)) {
    if (bytes > 0 && !diceDeMas())
        regiones = regionesDe(cosa.fd.numero(), cosa.estado);
    else
        leeEntero();
}

/// Where files are made up as they are read they may all claim to have a page.
bool Contenido::diceDeMas() const {
    unsigned char ultimo = 0;
    return cosa.estado.st_blocks == 0 &&
           pread(cosa.fd.numero(), &ultimo, 1, static_cast<off_t>(bytes) - 1) == 0;
}

/// Almost always there is nothing indeed.
void Contenido::leeEntero() {
    constexpr std::size_t maximo = 64 * mebi;
    for (;;) {
        const ssize_t leidos = read(cosa.fd.numero(), bloque().data(), largoBloque);
        if (leidos < 0 && errno == EINTR)
            continue;
        if (leidos < 0)
            porque = errno == EAGAIN ? "habría que esperar por lo que contiene" : queja(errno);
        if (leidos <= 0)
            break;
        leido.insert(leido.end(), bloque().begin(), bloque().begin() + leidos);
        if (leido.size() > maximo) {
            porque = "no dice cuánto contiene, y es mucho";
            break;
        }
    }
    bytes = leido.size();
}

void Contenido::anotaHuecos(archive_entry *ficha) const {
    const auto hasta = static_cast<std::int64_t>(bytes);
    const bool entero =
        regiones.size() == 1 && regiones[0].desde == 0 && regiones[0].hasta == hasta;
    if (entero)
        return;
    for (const auto &region : regiones)
        archive_entry_sparse_add_entry(ficha, region.desde, region.hasta - region.desde);
}

std::uint64_t Contenido::sinHuecos() const {
    std::uint64_t total = leido.size();
    for (const auto &region : regiones)
        total += static_cast<std::uint64_t>(region.hasta - region.desde);
    return total;
}

std::string Contenido::guarda(EscritorTar &tar) {
    tar.datos(leido);
    std::int64_t hecho = 0;
    for (const auto &region : regiones) {
        // The writer takes a file with its holes, and drops them.
        guardaCeros(tar, region.desde - hecho);
        guardaRegion(tar, region);
        hecho = region.hasta;
    }
    // What was written to it meanwhile may be in the archive in parts, and then
    // it is as bad as a part that could not be read.
    struct stat ahora {};
    if (porque.empty() && (fstat(cosa.fd.numero(), &ahora) != 0 || !igual(ahora, cosa.estado)))
        porque = "ha cambiado mientras se guardaba";
    return porque;
}

void Contenido::guardaRegion(EscritorTar &tar, Region region) {
    constexpr std::int64_t pagina = 4 * kibi; // no less than this is bad on a disk
    while (region.desde < region.hasta) {
        const auto faltan = static_cast<std::uint64_t>(region.hasta - region.desde);
        const ssize_t leidos = pread(cosa.fd.numero(), bloque().data(),
                                     std::min<std::uint64_t>(faltan, largoBloque), region.desde);
        if (leidos < 0 && errno == EINTR)
            continue;
        auto siguiente = region.desde + leidos;
        if (leidos < 0) {
            siguiente = std::min(region.hasta, (region.desde / pagina + 1) * pagina);
            porque = queja(errno) + "; donde no se puede leer va con ceros";
            guardaCeros(tar, siguiente - region.desde);
        } else if (leidos == 0) {
            siguiente = region.hasta;
            porque = "ha menguado mientras se guardaba; el resto va con ceros";
            guardaCeros(tar, siguiente - region.desde);
        } else {
            tar.datos(Octetos(bloque()).first(static_cast<std::size_t>(leidos)));
        }
        region.desde = siguiente;
    }
}

} // namespace orcalin
