#include "cifrado/cabecera_age.h"

#include "cifrado/claves.h"
#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/memoria.h"

#include <charconv>

namespace orcalin {
namespace {

constexpr std::size_t largoSal = 16;
constexpr std::size_t largoEnvuelta = largoClaveFichero + crypto_aead_chacha20poly1305_ietf_ABYTES;
constexpr int variante = sodium_base64_VARIANT_ORIGINAL_NO_PADDING;
constexpr std::string_view etiquetaSal = "age-encryption.org/v1/scrypt";
constexpr std::string_view destinatario = "-> scrypt ";
constexpr std::string_view pie = "---";

// The wrapping key is used once, so its nonce may stay zero.
constexpr std::array<unsigned char, crypto_aead_chacha20poly1305_ietf_NPUBBYTES> sinNonce{};

// No salt, which HKDF spells as zeros.
constexpr Mac sinSal{};

[[noreturn]] void danada() {
    throw Fallo("el archivo está dañado");
}

const unsigned char *crudo(std::string_view texto) {
    return reinterpret_cast<const unsigned char *>(texto.data());
}

std::string aBase64(std::string_view octetos) {
    std::string texto(sodium_base64_encoded_len(octetos.size(), variante), '\0');
    sodium_bin2base64(texto.data(), texto.size(), crudo(octetos), octetos.size(), variante);
    texto.pop_back(); // the terminating zero
    return texto;
}

/// Padding, other characters and set bits past the end are refused by the
/// library; what is left to check is the length.
std::string deBase64(std::string_view texto, std::size_t largo) {
    std::string octetos(largo, '\0');
    std::size_t escritos = 0;
    if (sodium_base642bin(reinterpret_cast<unsigned char *>(octetos.data()), largo, texto.data(),
                          texto.size(), nullptr, &escritos, nullptr, variante) != 0 ||
        escritos != largo)
        danada();
    return octetos;
}

/// Cuts the next line, without its end, off `resto`.
std::string_view linea(std::string_view &resto) {
    const auto fin = resto.find('\n');
    if (fin == std::string_view::npos)
        danada();
    const auto texto = resto.substr(0, fin);
    resto.remove_prefix(fin + 1);
    return texto;
}

int leeFactor(std::string_view texto) {
    int factor = 0;
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), factor);
    if (fin != texto.data() + texto.size() || texto.empty() || texto[0] < '1')
        danada();
    if (error != std::errc() || factor > factorMaximo)
        throw Fallo("el archivo exige un trabajo desmedido para abrirlo");
    return factor;
}

/// What this program's own archives ask for is tried in any case: the system may
/// find more than it promises. To ask for more is to be sure of it, since a
/// machine without memory stands still for everybody.
void exigeMemoria(int factor) {
    const auto pide = memoriaDeScrypt(factor);
    const auto hay = factor > factorHabitual ? memoriaLibre() : pide;
    if (hay < pide)
        throw Fallo("abrir el archivo pide " + std::to_string(pide / mebi) +
                    " MiB de memoria y quedan " + std::to_string(hay / mebi));
}

std::string pieCon(const Secreto &claveFichero, std::string_view autenticado) {
    const Secreto clave = hkdf(claveFichero, sinSal, "header");
    const Mac mac = hmac(clave.octetos(), autenticado);
    return {mac.begin(), mac.end()};
}

} // namespace

CabeceraAge CabeceraAge::lee(std::string_view octetos) {
    CabeceraAge cabecera;
    std::string_view resto = octetos;
    if (!resto.starts_with(marcaAge))
        danada();
    resto.remove_prefix(marcaAge.size());
    auto estrofa = linea(resto);
    if (!estrofa.starts_with(destinatario))
        throw Fallo("el archivo está cifrado de una manera que aquí no se conoce");
    estrofa.remove_prefix(destinatario.size());
    const auto espacio = estrofa.find(' ');
    if (espacio == std::string_view::npos)
        danada();
    cabecera.sal = deBase64(estrofa.substr(0, espacio), largoSal);
    cabecera.factor = leeFactor(estrofa.substr(espacio + 1));
    cabecera.envuelta = deBase64(linea(resto), largoEnvuelta);
    // A scrypt recipient stands alone, so the foot is the next line.
    cabecera.autenticado = octetos.size() - resto.size() + pie.size();
    const auto ultima = linea(resto);
    if (!ultima.starts_with("--- "))
        danada();
    cabecera.mac = deBase64(ultima.substr(pie.size() + 1), crypto_auth_hmacsha256_BYTES);
    cabecera.texto = octetos.substr(0, octetos.size() - resto.size());
    return cabecera;
}

std::string CabeceraAge::crea(const Secreto &contrasena, int factor, const Secreto &claveFichero) {
    std::string sal(largoSal, '\0');
    randombytes_buf(sal.data(), sal.size());
    const Secreto envoltura = scrypt(contrasena, std::string(etiquetaSal) + sal, factor);
    std::string envuelta(largoEnvuelta, '\0');
    crypto_aead_chacha20poly1305_ietf_encrypt(
        reinterpret_cast<unsigned char *>(envuelta.data()), nullptr, claveFichero.data(),
        claveFichero.size(), nullptr, 0, nullptr, sinNonce.data(), envoltura.data());
    std::string texto(marcaAge);
    texto.append(destinatario).append(aBase64(sal)).append(" ").append(std::to_string(factor));
    texto.append("\n").append(aBase64(envuelta)).append("\n").append(pie);
    return texto + " " + aBase64(pieCon(claveFichero, texto)) + "\n";
}

Secreto CabeceraAge::abre(const Secreto &contrasena) const {
    exigeMemoria(factor);
    const Secreto envoltura = scrypt(contrasena, std::string(etiquetaSal) + sal, factor);
    Secreto claveFichero(largoClaveFichero);
    if (crypto_aead_chacha20poly1305_ietf_decrypt(claveFichero.data(), nullptr, nullptr,
                                                  crudo(envuelta), envuelta.size(), nullptr, 0,
                                                  sinNonce.data(), envoltura.data()) != 0)
        throw Fallo("contraseña incorrecta");
    if (!esSuClave(claveFichero))
        danada();
    return claveFichero;
}

bool CabeceraAge::esSuClave(const Secreto &claveFichero) const {
    const auto propio = pieCon(claveFichero, std::string_view(texto).substr(0, autenticado));
    return sodium_memcmp(propio.data(), mac.data(), mac.size()) == 0;
}

} // namespace orcalin
