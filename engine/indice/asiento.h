#pragma once

#include <cstdint>
#include <string>

namespace orcalin {

/// What the index says of an entry.
struct Asiento {
    std::string ruta;           ///< as in the tar stream, normalised
    char tipo = '-';            ///< '-', 'd', 'l' or 'h'
    unsigned permisos = 0;      ///< the 12 permission bits
    std::uint64_t bytes = 0;    ///< of content; of a hard link, of what it names
    std::uint64_t lugar = 0;    ///< of its first header in the tar stream
    std::uint64_t enlazado = 0; ///< of a hard link: the place of the file it names
};

/// A path longer than this is no path of ours.
inline constexpr std::uint64_t rutaMaxima = 1024UL * 1024;

} // namespace orcalin
