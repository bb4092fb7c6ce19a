#pragma once

#include "tar/asa.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace orcalin {

/// What an archive says of one of its entries.
struct Entrada {
    std::string ruta;       ///< normalised, raw bytes; empty for the root folder itself
    std::string enlace;     ///< of a hard link: the normalised path it shares
    char tipo = '-';        ///< '-', 'd', 'l', 'h' (hard link) or '?' (anything else)
    mode_t permisos = 0;    ///< the 12 permission bits
    std::int64_t bytes = 0; ///< of content in the stream
};

/// Throws Fallo if the entry has no path.
Entrada describe(archive_entry *ficha);

/// `ruta` without `.` components and without doubled or trailing slashes. A
/// leading slash and `..` stay: such a path is hostile, not misspelt.
std::string normaliza(std::string_view ruta);

/// Whether a normalised path stays below the folder that it is applied to.
bool quedaDentro(std::string_view ruta);

/// Whether a normalised path is `carpeta` itself or below it.
bool esDe(std::string_view ruta, std::string_view carpeta);

} // namespace orcalin
