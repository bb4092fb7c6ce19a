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

/// Bytes of the longest path that is packed, listed or taken out: one of a hundred
/// thousand components costs the square of that.
inline constexpr std::uint64_t rutaMaxima = 16UL * 1024;

/// Bytes of the largest file, of which all may be a hole that costs an archive nothing.
inline constexpr std::int64_t ficheroMaximo = std::int64_t{1} << 48;

} // namespace orcalin
