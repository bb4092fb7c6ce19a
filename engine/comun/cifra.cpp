#include "comun/cifra.h"

#include <array>
#include <cstring>
#include <sodium.h>

namespace orcalin {
namespace {

using Llave = std::array<unsigned char, crypto_shorthash_KEYBYTES>;

Llave nuevaLlave() {
    Llave llave{};
    crypto_shorthash_keygen(llave.data());
    return llave;
}

} // namespace

std::uint64_t cifraDe(std::string_view texto) {
    static const Llave llave = nuevaLlave();
    std::array<unsigned char, crypto_shorthash_BYTES> resumen{};
    crypto_shorthash(resumen.data(), reinterpret_cast<const unsigned char *>(texto.data()),
                     texto.size(), llave.data());
    std::uint64_t numero = 0;
    static_assert(sizeof numero == resumen.size());
    std::memcpy(&numero, resumen.data(), sizeof numero);
    return numero;
}

} // namespace orcalin
