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
    // A hole reads as zeros and compresses to nothing; file flags mean little elsewhere.
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
        return falta(pieza, causa(errno));
    if ((estado.st_mode & S_IFMT) != pieza.clase)
        return falta(pieza, "ha cambiado mientras se guardaba");
    const Ficha nueva = ficha(pieza, fd.numero(), estado);
    const bool conContenido = archive_entry_hardlink(nueva.get()) == nullptr;
    marcos.entrada(pieza.trato, conContenido ? static_cast<std::uint64_t>(estado.st_size) : 0);
    const auto lugar = marcos.posicion();
    if (!tar.cabecera(nueva.get()))
        return falta(pieza, "no cabe en este formato");
    anota(pieza, estado, lugar);
    if (pieza.clase != S_IFREG || !conContenido)
        return;
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
    if (const Primero *otro = primero(pieza, estado)) {
        archive_entry_copy_hardlink(nueva.get(), otro->nombre.c_str());
        archive_entry_unset_size(nueva.get());
    }
    return nueva;
}

const Empaquetador::Primero *Empaquetador::primero(const Pieza &pieza,
                                                   const struct stat &estado) const {
    const auto otro = primeros.find(Inodo(estado.st_dev, estado.st_ino));
    return pieza.clase == S_IFREG && otro != primeros.end() ? &otro->second : nullptr;
}

void Empaquetador::anota(const Pieza &pieza, const struct stat &estado, std::uint64_t lugar) {
    constexpr mode_t bitsDePermiso = 07777;
    Asiento asiento{pieza.nombre, '-', estado.st_mode & bitsDePermiso, 0, lugar, 0};
    if (const Primero *otro = primero(pieza, estado)) {
        asiento.tipo = 'h';
        asiento.bytes = otro->bytes;
        asiento.enlazado = otro->lugar;
    } else if (pieza.clase == S_IFREG) {
        asiento.bytes = static_cast<std::uint64_t>(estado.st_size);
        if (estado.st_nlink > 1)
            primeros.emplace(Inodo(estado.st_dev, estado.st_ino),
                             Primero{pieza.nombre, lugar, asiento.bytes});
    } else {
        asiento.tipo = pieza.clase == S_IFDIR ? 'd' : 'l';
    }
    asientos.anade(std::move(asiento));
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
        bytes -= parte.size();
    }
}

void Empaquetador::falta(const Pieza &pieza, const std::string &porque) {
    avisos.falta("no se puede leer " + citado(pieza.origen) + ": " + porque);
}

} // namespace orcalin
