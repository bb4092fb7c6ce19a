#pragma once

#include "comun/avisos.h"
#include "empaque/origenes.h"
#include "flujo/fichero_provisional.h"
#include "flujo/marco.h"

#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace orcalin {

/// One thing to pack, as it was found.
struct Pieza {
    // In an order that leaves no gaps: there may be millions of them.
    Origenes::Numero carpeta = 0; ///< where it is,
    mode_t clase = 0;             ///< S_IFREG, S_IFDIR or S_IFLNK
    std::string propio;           ///< its name there
    std::string nombre;           ///< its path in the archive
    std::uint64_t bytes = 0;      ///< of content to read; 0 for a second name of a file
    ino_t inodo = 0;              ///< which one had the name
    std::uint32_t huella = 0;     ///< of the names in a folder
    Trato trato = Trato::otro;    ///< of a regular file
    bool incompleta = false;      ///< a folder, not all of which could be looked into

    /// Folders are no files to whoever counts files.
    [[nodiscard]] bool cuenta() const { return clase != S_IFDIR; }
};

/// Everything there is to pack, in the order of the archive.
using Plan = std::vector<Pieza>;

/// How long the tar stream of a plan will be, but for extended headers.
std::uint64_t bytesPrevistos(const Plan &plan);

/// Walks the sources without ever following a symbolic link, not even when the
/// source is one; only on the way to a source they are followed. The folders go
/// to `carpetas`. Leaves out `destino` in both its forms. What cannot be packed
/// or looked into goes to `avisos`. Throws Fallo if a source does not exist or
/// is the destination itself, or when the process may open no more files.
Plan planea(const std::vector<std::string> &origenes, const FicheroProvisional &destino,
            Origenes &carpetas, Avisos &avisos);

} // namespace orcalin
