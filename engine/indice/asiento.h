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
    bool incompleta = false;    ///< not all of it was read as it was
};

/// Where the entry behind this one in the stream would begin if neither had
/// extended headers. Wraps around for sizes that cannot be.
inline std::uint64_t lugarTras(const Asiento &asiento) {
    constexpr std::uint64_t bloque = 512;
    const std::uint64_t contenido = asiento.tipo == '-' ? asiento.bytes : 0;
    return asiento.lugar + bloque + (contenido + bloque - 1) / bloque * bloque;
}

/// A path longer than this is no path of ours.
inline constexpr std::uint64_t rutaMaxima = 1024UL * 1024;

} // namespace orcalin
