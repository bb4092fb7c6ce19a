#include "cifrado/claves.h"

#include <cstdint>
#include <new>
#include <string>

namespace orcalin {
namespace {

constexpr std::size_t largoClave = 32;

void autentica(Octetos clave, std::string_view mensaje, unsigned char *resultado) {
    crypto_auth_hmacsha256_state estado;
    crypto_auth_hmacsha256_init(&estado, clave.data(), clave.size());
    crypto_auth_hmacsha256_update(&estado, reinterpret_cast<const unsigned char *>(mensaje.data()),
                                  mensaje.size());
    crypto_auth_hmacsha256_final(&estado, resultado);
    sodium_memzero(&estado, sizeof estado);
}

} // namespace

Mac hmac(Octetos clave, std::string_view mensaje) {
    Mac mac{};
    autentica(clave, mensaje, mac.data());
    return mac;
}

Secreto hkdf(const Secreto &material, Octetos sal, std::string_view para) {
    const std::string_view octetos(reinterpret_cast<const char *>(material.data()),
                                   material.size());
    Secreto extracto(largoClave);
    autentica(sal, octetos, extracto.data());
    Secreto clave(largoClave);
    autentica(extracto.octetos(), std::string(para) + '\x01', clave.data());
    return clave;
}

Secreto scrypt(const Secreto &contrasena, std::string_view sal, int factor) {
    constexpr std::uint32_t r = 8;
    constexpr std::uint32_t p = 1;
    Secreto clave(largoClave);
    if (crypto_pwhash_scryptsalsa208sha256_ll(contrasena.data(), contrasena.size(),
                                              reinterpret_cast<const unsigned char *>(sal.data()),
                                              sal.size(),
                                              std::uint64_t{1} << static_cast<unsigned>(factor), r,
                                              p, clave.data(), clave.size()) != 0)
        throw std::bad_alloc();
    return clave;
}

} // namespace orcalin
