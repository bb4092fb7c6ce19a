#pragma once

#include "comun/avisos.h"
#include "saque/archivo.h"
#include "saque/destino.h"
#include "saque/disco.h"
#include "saque/mapa.h"
#include "saque/pasada.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orcalin {

/// Takes entries out of an archive into a folder: all of them, or one and what
/// is below it. One is looked up in the index, so that no more is decompressed
/// than what it lies in; everything, and an archive without an index, is read
/// from beginning to end.
///
/// With an index everything sound comes out, whatever else is damaged, and what
/// was found is compared with what the index says. Without one, damage ends it;
/// what came before stays.
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
    /// to take out. Throws Fallo when it cannot go on, and when no single entry is
    /// missing but something is wrong all the same.
    bool saca();

    /// After saca(): what came out is on the disk from here on. Throws Fallo.
    void vuelca() const;

private:
    bool porIndice();
    void cumple(const Indice &indice);
    void cumpleUno(LectorTar &lector, std::uint64_t origen, const Encargos::value_type &encargo);
    void recorre(const Indice *indice);
    void primeraLectura(Pasada &pasada);
    void segundaLectura(const Indice *indice);
    void cuentaLoPerdido(const Pasada &pasada);
    void sacaEntrada(LectorTar &lector, archive_entry *ficha, const Entrada &entrada);
    Disco &disco();
    void acaba(bool leido);
    void saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
              const std::vector<std::string> &comos);
    [[nodiscard]] std::string fichero(std::string enlace);
    void cuenta(const std::string &ruta);
    void falta(const std::string &ruta, const std::string &porque);
    void danada(const std::string &ruta);

    const Archivo &archivo;
    std::string pedida;
    Avisos &avisos;
    Destino destino;
    bool reemplaza;
    std::optional<Disco> escritor; // once there is something to write
    std::optional<Mapa> mapa;      // of an index that is of use
    bool algo = false;
    std::string enCurso; // the entry that is being read, if it is wanted
    std::string pero;    // what is wrong beside entries that are missing
    std::vector<std::pair<std::string, unsigned>> deCamino;     // folders above, and permissions
    std::map<std::string, std::string> enlaces;                 // every hard link and its target
    std::map<std::string, std::vector<std::string>> pendientes; // file wanted, the links' paths
};

} // namespace orcalin
