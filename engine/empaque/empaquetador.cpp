#include "empaque/empaquetador.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/texto.h"
#include "tar/hora.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 128 * kibi;

/// Opens a regular file (nothing else needs to be open) and takes its status.
/// What it is may have changed since it was planned: hence not following links,
/// and not waiting for the other end of a pipe. False with errno set.
bool abre(const Pieza &pieza, Descriptor &fd, struct stat &estado) {
    if (pieza.clase != S_IFREG)
        return lstat(pieza.origen.c_str(), &estado) == 0;
    constexpr int modo = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    fd = Descriptor(open(pieza.origen.c_str(), modo));
    return fd.valido() && fstat(fd.numero(), &estado) == 0;
}

void anotaHuecos(archive_entry *ficha, const std::vector<Region> &regiones, std::int64_t bytes) {
    const bool entero =
        regiones.size() == 1 && regiones[0].desde == 0 && regiones[0].hasta == bytes;
    if (entero)
        return;
    for (const auto &region : regiones)
        archive_entry_sparse_add_entry(ficha, region.desde, region.hasta - region.desde);
}

std::uint64_t bytesDe(const std::vector<Region> &regiones) {
    std::int64_t total = 0;
    for (const auto &region : regiones)
        total += region.hasta - region.desde;
    return static_cast<std::uint64_t>(total);
}

bool igual(const timespec &a, const timespec &b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// Reading a file changes none of these.
bool igual(const struct stat &a, const struct stat &b) {
    return a.st_size == b.st_size && igual(a.st_mtim, b.st_mtim) && igual(a.st_ctim, b.st_ctim);
}

} // namespace

Empaquetador::Empaquetador(SumideroMarcos &marcosDados, Progreso &progresoDado, Avisos &avisosDados)
    : marcos(marcosDados)
    , tar(marcosDados)
    , progreso(progresoDado)
    , avisos(avisosDados)
    , disco(archive_read_disk_new())
    , bloque(largoBloque) {
    if (!disco)
        throw std::bad_alloc();
    archive_read_disk_set_standard_lookup(disco.get());
    // Holes we find ourselves, asking less; file flags mean little elsewhere.
    archive_read_disk_set_behavior(disco.get(),
                                   ARCHIVE_READDISK_NO_SPARSE | ARCHIVE_READDISK_NO_FFLAGS);
}

void Empaquetador::guarda(const Pieza &pieza) {
    intenta(pieza);
    tar.acabaEntrada();
    progreso.termina(pieza, marcos.posicion());
}

void Empaquetador::acaba() {
    tar.cierra();
}

void Empaquetador::intenta(const Pieza &pieza) {
    Descriptor fd;
    struct stat estado {};
    if (!abre(pieza, fd, estado))
        return falta(pieza, errno);
    if ((estado.st_mode & S_IFMT) != pieza.clase)
        return falta(pieza, "ha cambiado mientras se guardaba");
    const Ficha nueva = ficha(pieza, fd.numero(), estado);
    const bool conContenido =
        pieza.clase == S_IFREG && archive_entry_hardlink(nueva.get()) == nullptr;
    std::vector<Region> regiones;
    if (conContenido) {
        regiones = regionesDe(fd.numero(), estado);
        anotaHuecos(nueva.get(), regiones, estado.st_size);
        marcos.entrada(pieza.trato, bytesDe(regiones));
    }
    const auto lugar = marcos.posicion();
    if (!tar.cabecera(nueva.get()))
        return falta(pieza, "no cabe en este formato");
    const bool entera = !conContenido || guardaContenido(pieza, fd.numero(), estado, regiones);
    anota(pieza, estado, lugar, !entera || pieza.incompleta);
}

Ficha Empaquetador::ficha(const Pieza &pieza, int fd, const struct stat &estado) const {
    Ficha nueva = nuevaFicha();
    archive_entry_copy_sourcepath(nueva.get(), pieza.origen.c_str());
    // What it cannot find out (an attribute out of reach) is no reason to go without the rest.
    archive_read_disk_entry_from_file(disco.get(), nueva.get(), fd, &estado);
    archive_entry_copy_pathname(nueva.get(), pieza.nombre.c_str());
    // When it was last looked at is of no use in an archive, and packing changes it.
    archive_entry_unset_atime(nueva.get());
    archive_entry_unset_ctime(nueva.get());
    archive_entry_unset_birthtime(nueva.get());
    ponHora(nueva.get(), estado.st_mtim);
    if (const Primero *otro = primero(pieza, estado)) {
        archive_entry_copy_hardlink(nueva.get(), otro->nombre.c_str());
        archive_entry_unset_size(nueva.get());
    }
    return nueva;
}

const Empaquetador::Primero *Empaquetador::primero(const Pieza &pieza,
                                                   const struct stat &estado) const {
    if (pieza.clase != S_IFREG || estado.st_nlink < 2)
        return nullptr;
    const auto otro = primeros.find(identidadDe(estado));
    return otro != primeros.end() ? &otro->second : nullptr;
}

/// False if it is not in the archive as it was at one moment. What was written
/// to it meanwhile may be there in parts, and then it is as bad as a part that
/// could not be read.
bool Empaquetador::guardaContenido(const Pieza &pieza, int fd, const struct stat &estado,
                                   const std::vector<Region> &regiones) {
    if (!guardaRegiones(pieza, fd, regiones))
        return false;
    struct stat ahora {};
    if (fstat(fd, &ahora) == 0 && igual(ahora, estado))
        return true;
    falta(pieza, "ha cambiado mientras se guardaba");
    return false;
}

bool Empaquetador::guardaRegiones(const Pieza &pieza, int fd, const std::vector<Region> &regiones) {
    std::int64_t hecho = 0;
    for (const auto &region : regiones) {
        guardaHueco(region.desde - hecho);
        if (!guardaRegion(pieza, fd, region))
            return false;
        hecho = region.hasta;
    }
    return true;
}

/// False if not all of it could be read.
bool Empaquetador::guardaRegion(const Pieza &pieza, int fd, Region region) {
    while (region.desde < region.hasta) {
        const auto cuantos = std::min<std::int64_t>(region.hasta - region.desde, largoBloque);
        const ssize_t leidos =
            pread(fd, bloque.data(), static_cast<std::size_t>(cuantos), region.desde);
        if (leidos < 0 && errno == EINTR)
            continue;
        if (leidos <= 0) {
            if (leidos < 0)
                falta(pieza, errno);
            else
                falta(pieza, "ha menguado mientras se guardaba; el resto va con ceros");
            return false;
        }
        const auto parte = Octetos(bloque).first(static_cast<std::size_t>(leidos));
        tar.datos(parte);
        region.desde += leidos;
    }
    return true;
}

/// The writer takes a file with its holes, and drops them.
void Empaquetador::guardaHueco(std::int64_t bytes) {
    static const std::vector<unsigned char> ceros(largoBloque);
    while (bytes > 0) {
        const auto parte = Octetos(ceros).first(std::min<std::uint64_t>(bytes, largoBloque));
        tar.datos(parte);
        bytes -= static_cast<std::int64_t>(parte.size());
    }
}

void Empaquetador::anota(const Pieza &pieza, const struct stat &estado, std::uint64_t lugar,
                         bool incompleta) {
    constexpr mode_t bitsDePermiso = 07777;
    Asiento asiento{pieza.nombre, '-', estado.st_mode & bitsDePermiso, 0, lugar, 0, incompleta};
    if (const Primero *otro = primero(pieza, estado)) {
        asiento.tipo = 'h';
        asiento.bytes = otro->bytes;
        asiento.enlazado = otro->lugar;
        asiento.incompleta = otro->incompleta;
    } else if (pieza.clase == S_IFREG) {
        asiento.bytes = static_cast<std::uint64_t>(estado.st_size);
        if (estado.st_nlink > 1)
            primeros.emplace(identidadDe(estado),
                             Primero{pieza.nombre, lugar, asiento.bytes, incompleta});
    } else {
        asiento.tipo = pieza.clase == S_IFDIR ? 'd' : 'l';
    }
    asientos.anade(std::move(asiento));
}

void Empaquetador::falta(const Pieza &pieza, int porque) {
    if (escasea(porque))
        falla("no se puede leer " + citado(pieza.origen), porque);
    falta(pieza, causa(porque));
}

void Empaquetador::falta(const Pieza &pieza, const std::string &porque) {
    avisos.falta("no se puede leer " + citado(pieza.origen) + ": " + porque);
}

} // namespace orcalin
