#pragma once

#include "flujo/suma.h"

#include <cstdint>

namespace orcalin {

/// A stretch of the tar stream that was compressed on its own.
struct Marco {
    std::uint64_t empacado = 0; ///< bytes in the archive
    std::uint64_t crudo = 0;    ///< bytes of the tar stream
    Suma suma{};                ///< of these
    std::uint64_t crc = 0;      ///< CRC64 (as in xz) of those in the archive; not for the index
};

/// How many frames without content may follow one another: more are there to keep
/// whoever reads them busy.
inline constexpr std::uint64_t vaciosSeguidos = 1000;

/// Which of the two compressions an archive is made with.
enum class Envase { zstd, xz };

/// What content deserves: it decides what lies together, and how `--max`
/// filters it. The order is that of the archive.
enum class Trato : unsigned char {
    texto,
    x86,
    arm64,
    arm,
    otro,
    comprimido, ///< compressed already: there is nothing to gain
};

} // namespace orcalin
