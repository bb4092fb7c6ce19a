#pragma once

#include "flujo/fichero_provisional.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orcalin {

/// What a folder holds, as far as it could be read.
struct Hijos {
    std::vector<std::string> nombres; ///< sorted, each once
    ino_t inodo = 0;                  ///< the folder's own
    int porque = 0;                   ///< why not all of it, an errno value; else 0

    /// Tells these names from others. Times would not do instead: in the folder of
    /// the destination it is we who change them, and a file that came and went
    /// again meanwhile is missing nowhere.
    [[nodiscard]] std::uint32_t huella() const;
};

/// Reads the folder `nombre` in the open folder `madre`, following no link.
/// Leaves out the names of `destino`.
Hijos hijosDe(int madre, const std::string &nombre, const FicheroProvisional &destino);

/// Whether the number of this inode says which one it is, for as long as it
/// exists: some file systems make it up anew each time they come by it. `fd` may
/// be one that stands for the thing (O_PATH).
bool numeraDeVerdad(int fd);

} // namespace orcalin
