#pragma once

#include "tar/entrada.h"
#include "tar/lector_tar.h"

#include <string>
#include <vector>

namespace orcalin {

/// Writes entries below the current folder, with everything the archive tells
/// of them. Never outside it: no path with `..` or a leading slash, none
/// through a symbolic link. What has an entry's name is replaced.
///
/// A single entry that fails throws FalloDeEntrada and leaves nothing half
/// done; a full disk, and a damaged archive, throw Fallo.
class Disco {
public:
    /// Throws std::bad_alloc.
    Disco();

    /// Writes the entry that `lector` stands at under its own path, or `como`.
    /// A regular file gets its name only when all its content is there.
    void saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
              const std::string &como);

    /// Makes `ruta` another name of the file `enlace`, written before.
    void enlaza(archive_entry *ficha, const std::string &ruta, const std::string &enlace);

    /// Gives folders their modes and times, which wait for their contents.
    void acaba();

    /// Whether the last entry came out without some attribute of its own.
    [[nodiscard]] bool incompleta() const { return faltaAlgo; }

private:
    void sacaCarpeta(archive_entry *ficha, const std::string &como);
    void sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como);
    void copia(LectorTar &lector);
    void cabecera(archive_entry *ficha, const std::string &ruta);
    void comprueba(la_ssize_t resultado);

    AsaEscritura disco;
    std::vector<Ficha> carpetasDeAntes; // entries whose folder was there already
    bool faltaAlgo = false;
};

} // namespace orcalin
