#include "empaque/empaquetador.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/texto.h"

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

} // namespace

Empaquetador::Empaquetador(EscritorTar &tarDado, Progreso &progresoDado, Avisos &avisosDados)
    : tar(tarDado)
    , progreso(progresoDado)
    , avisos(avisosDados)
    , disco(archive_read_disk_new())
    , bloque(largoBloque) {
    if (!disco)
        throw std::bad_alloc();
    archive_read_disk_set_standard_lookup(disco.get());
    // A hole reads as zeros and compresses to nothing; file flags mean little elsewhere.
    archive_read_disk_set_behavior(disco.get(),
                                   ARCHIVE_READDISK_NO_SPARSE | ARCHIVE_READDISK_NO_FFLAGS);
}

void Empaquetador::guarda(const Pieza &pieza) {
    intenta(pieza);
    progreso.termina(pieza);
}

void Empaquetador::intenta(const Pieza &pieza) {
    Descriptor fd;
    struct stat estado {};
    if (!abre(pieza, fd, estado))
        return falta(pieza, causa(errno));
    if ((estado.st_mode & S_IFMT) != pieza.clase)
        return falta(pieza, "ha cambiado mientras se guardaba");
    const Ficha nueva = ficha(pieza, fd.numero(), estado);
    const bool conContenido = archive_entry_hardlink(nueva.get()) == nullptr;
    if (!tar.cabecera(nueva.get()))
        return falta(pieza, "no cabe en este formato");
    ++cuantas;
    if (pieza.clase != S_IFREG || !conContenido)
        return;
    if (estado.st_nlink > 1)
        primerosNombres.emplace(Inodo(estado.st_dev, estado.st_ino), pieza.nombre);
    guardaContenido(pieza, fd.numero(), static_cast<std::uint64_t>(estado.st_size));
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
    const auto primero = primerosNombres.find(Inodo(estado.st_dev, estado.st_ino));
    if (pieza.clase == S_IFREG && primero != primerosNombres.end()) {
        archive_entry_copy_hardlink(nueva.get(), primero->second.c_str());
        archive_entry_unset_size(nueva.get());
    }
    return nueva;
}

void Empaquetador::guardaContenido(const Pieza &pieza, int fd, std::uint64_t bytes) {
    while (bytes > 0) {
        const ssize_t leidos = read(fd, bloque.data(), std::min<std::uint64_t>(bytes, largoBloque));
        if (leidos < 0 && errno == EINTR)
            continue;
        if (leidos < 0)
            return falta(pieza, causa(errno));
        if (leidos == 0)
            return falta(pieza, "ha menguado mientras se guardaba; el resto va con ceros");
        const auto parte = Octetos(bloque).first(static_cast<std::size_t>(leidos));
        tar.datos(parte);
        progreso.lee(pieza, parte.size());
        bytes -= parte.size();
    }
}

void Empaquetador::falta(const Pieza &pieza, const std::string &porque) {
    avisos.falta("no se puede leer " + citado(pieza.origen) + ": " + porque);
}

} // namespace orcalin
