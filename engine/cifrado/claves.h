#pragma once

#include "cifrado/secreto.h"
#include "comun/medidas.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orcalin {

using Mac = std::array<unsigned char, 32>;

/// HMAC-SHA256 of `mensaje`.
Mac hmac(Octetos clave, std::string_view mensaje);

/// HKDF-SHA256 (RFC 5869) with one block of output, 32 bytes.
Secreto hkdf(const Secreto &material, Octetos sal, std::string_view para);

/// Bytes of memory that scrypt() with this factor takes.
constexpr std::uint64_t memoriaDeScrypt(int factor) {
    return std::uint64_t{kibi} << static_cast<unsigned>(factor);
}

/// scrypt with N = 2^factor, r = 8, p = 1; 32 bytes. Throws
/// std::bad_alloc without the memory.
Secreto scrypt(const Secreto &contrasena, std::string_view sal, int factor);

} // namespace orcalin
