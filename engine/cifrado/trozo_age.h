#pragma once

#include "cifrado/secreto.h"
#include "comun/medidas.h"

#include <array>
#include <cstdint>

namespace orcalin {

/// The payload of an age v1 file: a nonce, then chunks of 64 KiB of plaintext,
/// each sealed on its own. Only the last may be shorter, and it is empty only
/// if there is no plaintext at all.
inline constexpr std::size_t largoNonceAge = 16;
inline constexpr std::size_t trozoClaro = 64 * kibi;
inline constexpr std::size_t trozoSellado = trozoClaro + crypto_aead_chacha20poly1305_ietf_ABYTES;

/// Seals and opens single chunks. A chunk's place and whether it is the last
/// are part of what is authenticated.
class SelloAge {
public:
    /// The payload key comes from the file key and the payload's nonce.
    SelloAge(const Secreto &claveFichero, Octetos nonce);

    /// Seals `claro` (at most trozoClaro bytes) into `sellado`; returns its bytes.
    std::size_t sella(Octetos claro, std::uint64_t numero, bool ultimo, Hueco sellado) const;

    /// Opens `sellado` into `claro`. False if it is not this chunk.
    [[nodiscard]] bool abre(Octetos sellado, std::uint64_t numero, bool ultimo, Hueco claro) const;

private:
    Secreto clave;
};

} // namespace orcalin
