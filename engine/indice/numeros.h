#pragma once

#include "flujo/flujo.h"

#include <cstdint>
#include <vector>

namespace orcalin {

// How the index and its trailer write things.

// What stands with the permissions of an entry.
inline constexpr unsigned permisosMaximos = 07777;
inline constexpr unsigned marcaIncompleta = 010000;
inline constexpr unsigned marcaConMas = 020000;

/// Appends the low `bytes` bytes of `numero`, least significant first.
inline void ponFijo(std::vector<unsigned char> &en, std::uint64_t numero, std::size_t bytes) {
    for (; bytes > 0; --bytes, numero >>= 8U)
        en.push_back(static_cast<unsigned char>(numero));
}

/// The number in the first eight of `bytes`.
inline std::uint64_t fijo(Octetos bytes) {
    std::uint64_t numero = 0;
    for (std::size_t i = sizeof numero; i-- > 0;)
        numero = numero << 8U | bytes[i];
    return numero;
}

/// Appends `numero` in as few bytes as it takes, seven bits in each.
inline void ponVariable(std::vector<unsigned char> &en, std::uint64_t numero) {
    constexpr unsigned sigue = 0x80;
    for (; numero >= sigue; numero >>= 7U)
        en.push_back(static_cast<unsigned char>(numero | sigue));
    en.push_back(static_cast<unsigned char>(numero));
}

/// A number that may be negative as one that is not: small stays small.
inline std::uint64_t enZigzag(std::int64_t numero) {
    return static_cast<std::uint64_t>(numero) << 1U ^ static_cast<std::uint64_t>(numero >> 63U);
}

inline std::int64_t deZigzag(std::uint64_t numero) {
    return static_cast<std::int64_t>(numero >> 1U ^ (~(numero & 1U) + 1U));
}

/// The header of a frame that zstd decoders skip, with `largo` bytes to follow.
inline std::vector<unsigned char> saltable(std::size_t largo) {
    std::vector<unsigned char> cabecera{0x50, 0x2a, 0x4d, 0x18};
    ponFijo(cabecera, largo, sizeof(std::uint32_t));
    return cabecera;
}

} // namespace orcalin
