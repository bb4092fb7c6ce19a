#pragma once

#include "comun/avisos.h"
#include "saque/archivo.h"
#include "saque/destino.h"
#include "saque/disco.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orcalin {

/// Takes entries out of an archive into a folder: all of them, or one
/// and what is below it. One is looked up in the index, so that no more is
/// decompressed than what it lies in; everything, and an archive without an
/// index, is read from beginning to end.
///
/// A hard link to a file that was taken out becomes a link. One to a file that
/// was not (it was not asked for) gets the content, and so never reaches
/// anything that is not in the archive.
class Extraccion {
public:
    /// `pedida` is a normalised path, empty for everything. The folder `destino`
    /// is made when there is something to put into it. `reemplaza`: see Disco.
    /// Both references must outlive this.
    Extraccion(const Archivo &archivo, std::string pedida, Avisos &avisos,
               std::filesystem::path destino = ".", bool reemplaza = false);

    /// Entries that fail go to the warnings. Returns whether there was anything
    /// to take out. Throws Fallo when it cannot go on.
    bool saca();

private:
    /// What to take out of a place of the tar stream, and as what: the first path
    /// is the entry's own or, if that was not asked for, a link's; the rest are to
    /// become links to the first.
    struct Encargo {
        bool conElla = false;
        std::vector<std::string> comos;
    };
    using Encargos = std::map<std::uint64_t, Encargo>;

    bool porIndice();
    Encargos busca(Indice &indice);
    void cumple(const Indice &indice, const Encargos &encargos);
    void recorre();
    void primeraLectura();
    void segundaLectura();
    void sacaEntrada(LectorTar &lector, archive_entry *ficha, const Entrada &entrada);
    Disco &disco();
    void acaba(bool leido);
    void saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
              const std::vector<std::string> &comos);
    [[nodiscard]] std::string fichero(std::string enlace) const;
    void cuenta(const std::string &ruta);
    void falta(const std::string &ruta, const std::string &porque);

    const Archivo &archivo;
    std::string pedida;
    Avisos &avisos;
    Destino destino;
    bool reemplaza;
    std::optional<Disco> escritor; // once there is something to write
    bool algo = false;
    std::map<std::string, std::string> enlaces;                 // every hard link and its target
    std::map<std::string, std::vector<std::string>> pendientes; // file wanted, the links' paths
};

} // namespace orcalin
