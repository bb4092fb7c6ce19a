#pragma once

#include "saque/atributos.h"
#include "saque/carpetas.h"
#include "saque/nuevo.h"
#include "saque/sacados.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

#include <string>

namespace orcalin {

/// Writes entries below a folder, with everything the archive tells of them.
/// Never outside it: no path with `..` or a leading slash, none through a
/// symbolic link.
///
/// Nothing that is there is lost. What has an entry's name and content already,
/// or has it under that name with a number, is left alone; what is something
/// else stays, and the entry comes out with the first number that is free. Of
/// two entries of one path the later one stays.
///
/// A single entry that fails throws FalloDeEntrada and leaves nothing half
/// done; a full disk, and a damaged archive, throw Fallo.
class Disco {
public:
    /// `destino` is open. With `reemplaza`, what has an entry's name gives way to
    /// it, in one step. While it lives the process has no umask. Throws Fallo or
    /// std::bad_alloc.
    Disco(Descriptor destino, bool reemplaza);
    Disco(const Disco &) = delete;
    Disco &operator=(const Disco &) = delete;
    ~Disco();

    /// Writes the entry that `lector` stands at under its own path, or `como`.
    /// No file has its name before all its content is here.
    void saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
              const std::string &como);

    /// Makes `ruta` another name of the file `enlace`, taken out before.
    void enlaza(const std::string &ruta, const std::string &enlace);

    /// That the archive has the folder `ruta` with these permissions, although it
    /// was not taken out itself.
    void permite(const std::string &ruta, mode_t permisos);

    /// Gives folders their modes and times, which wait for their contents (see
    /// Carpetas::acaba()).
    void acaba(bool leido);

    /// What was written is on the disk from here on. Throws FalloDeDisco.
    void vuelca() const;

    /// Whether the last entry (after acaba(), some folder) came out without an
    /// attribute that this user may give.
    [[nodiscard]] bool incompleta() const { return faltaAlgo; }

    [[nodiscard]] const Sacados &sacados() const { return hechos; }

private:
    /// A path, taken apart.
    struct Lugar {
        CarpetaAbierta carpeta;
        std::string nombre;
    };

    Lugar lugar(const std::string &ruta);
    void sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como);
    void sacaEnlace(archive_entry *ficha, const std::string &como);
    void coloca(Nuevo &nuevo, const std::string &como, Sacados::Que que);
    void cambia(Nuevo &nuevo, const std::string &como, Sacados::Que que);
    std::string igual(const Nuevo &nuevo, const std::string &nombre, const std::string &salvo);
    std::string conNumero(Nuevo &nuevo, const std::string &nombre, bool &escrito);

    mode_t mascara; // the process's, from before
    bool reemplaza;
    AsaEscritura cuentas;
    Sacados hechos;
    Carpetas carpetas;
    Bloque contenido; // of a small file that came in pieces
    bool faltaAlgo = false;
};

} // namespace orcalin
