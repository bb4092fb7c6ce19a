#include "cifrado/trozo_age.h"

#include "cifrado/claves.h"

namespace orcalin {
namespace {

using Nonce = std::array<unsigned char, crypto_aead_chacha20poly1305_ietf_NPUBBYTES>;

/// Eleven bytes of big-endian count and one that marks the last chunk.
Nonce nonceDe(std::uint64_t numero, bool ultimo) {
    Nonce nonce{};
    for (std::size_t i = 0; i < sizeof numero; ++i)
        nonce[nonce.size() - 2 - i] = static_cast<unsigned char>(numero >> (8 * i));
    nonce.back() = ultimo ? 1 : 0;
    return nonce;
}

} // namespace

SelloAge::SelloAge(const Secreto &claveFichero, Octetos nonce)
    : clave(hkdf(claveFichero, nonce, "payload")) {}

std::size_t SelloAge::sella(Octetos claro, std::uint64_t numero, bool ultimo, Hueco sellado) const {
    const Nonce nonce = nonceDe(numero, ultimo);
    unsigned long long largo = 0;
    crypto_aead_chacha20poly1305_ietf_encrypt(sellado.data(), &largo, claro.data(), claro.size(),
                                              nullptr, 0, nullptr, nonce.data(), clave.data());
    return largo;
}

bool SelloAge::abre(Octetos sellado, std::uint64_t numero, bool ultimo, Hueco claro) const {
    const Nonce nonce = nonceDe(numero, ultimo);
    return crypto_aead_chacha20poly1305_ietf_decrypt(claro.data(), nullptr, nullptr, sellado.data(),
                                                     sellado.size(), nullptr, 0, nonce.data(),
                                                     clave.data()) == 0;
}

} // namespace orcalin
