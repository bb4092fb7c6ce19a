#pragma once

#include "cifrado/secreto.h"

#include <array>
#include <string_view>

namespace orcalin {

using Mac = std::array<unsigned char, 32>;

/// HMAC-SHA256 of `mensaje`.
Mac hmac(Octetos clave, std::string_view mensaje);

/// HKDF-SHA256 (RFC 5869) with one block of output, 32 bytes.
Secreto hkdf(const Secreto &material, Octetos sal, std::string_view para);

/// scrypt with N = 2^factor, r = 8, p = 1; 32 bytes. It takes 2^(factor + 10)
/// bytes of memory; throws std::bad_alloc without them.
Secreto scrypt(const Secreto &contrasena, std::string_view sal, int factor);

} // namespace orcalin
