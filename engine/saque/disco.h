#pragma once

#include "saque/atributos.h"
#include "saque/carpetas.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

#include <map>
#include <string>

namespace orcalin {

/// Writes entries below the current folder, with everything the archive tells
/// of them. Never outside it: no path with `..` or a leading slash, none
/// through a symbolic link. What has an entry's name is replaced.
///
/// A single entry that fails throws FalloDeEntrada and leaves nothing half
/// done; a full disk, and a damaged archive, throw Fallo.
class Disco {
public:
    /// While it lives the process has no umask. Throws Fallo or std::bad_alloc.
    Disco();
    Disco(const Disco &) = delete;
    Disco &operator=(const Disco &) = delete;
    ~Disco();

    /// Writes the entry that `lector` stands at under its own path, or `como`.
    /// Whatever was there stays until all its content is here.
    void saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
              const std::string &como);

    /// Makes `ruta` another name of the file `enlace`, written before.
    void enlaza(archive_entry *ficha, const std::string &ruta, const std::string &enlace);

    /// Gives folders their modes and times, which wait for their contents.
    void acaba();

    /// Whether the last entry (after acaba(), some folder) came out without an
    /// attribute that this user may give.
    [[nodiscard]] bool incompleta() const { return faltaAlgo; }

private:
    /// A path, taken apart.
    struct Lugar {
        CarpetaAbierta carpeta;
        std::string nombre;
    };

    Lugar lugar(const std::string &ruta);
    void sacaCarpeta(archive_entry *ficha, const std::string &como);
    void sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como);
    void sacaEnlace(archive_entry *ficha, const std::string &como);
    template<typename Crea, typename Prepara>
    void pon(const std::string &como, const Crea &crea, const Prepara &prepara);
    void yaNoEsCarpeta(const std::string &ruta);

    mode_t mascara; // the process's, from before
    AsaEscritura cuentas;
    Carpetas carpetas;
    std::map<std::string, Atributos> porAcabar; // folders
    bool faltaAlgo = false;
};

} // namespace orcalin
