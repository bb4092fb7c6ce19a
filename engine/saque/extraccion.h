#pragma once

#include "comun/avisos.h"
#include "saque/archivo.h"
#include "saque/disco.h"

#include <map>
#include <string>
#include <unordered_set>

namespace orcalin {

/// Takes entries out of an archive into the current folder: all of them, or one
/// and what is below it.
///
/// A hard link to a file that was taken out becomes a link. One to a file that
/// was not (it was not asked for) gets the content in a second reading, and so
/// never reaches anything that is not in the archive.
class Extraccion {
public:
    /// `pedida` is a normalised path, empty for everything. Both references
    /// must outlive this.
    Extraccion(const Archivo &archivo, std::string pedida, Avisos &avisos);

    /// Entries that fail go to the warnings. Returns whether there was anything
    /// to take out. Throws Fallo when it cannot go on.
    bool saca();

private:
    void primeraLectura();
    void segundaLectura();
    void sacaEntrada(LectorTar &lector, archive_entry *ficha, const Entrada &entrada);
    void sacaPendientes(LectorTar &lector, archive_entry *ficha, const Entrada &entrada);
    [[nodiscard]] std::string fichero(std::string enlace) const;
    void falta(const std::string &ruta, const std::string &porque);

    const Archivo &archivo;
    std::string pedida;
    Avisos &avisos;
    Disco disco;
    bool algo = false;
    std::unordered_set<std::string> sacados;            // regular files
    std::map<std::string, std::string> enlaces;         // every hard link and its target
    std::multimap<std::string, std::string> pendientes; // file wanted, the link's path
};

} // namespace orcalin
