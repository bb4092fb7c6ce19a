#include "comun/texto.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::string_view cifras = "0123456789abcdef";
// Of a name in a message; longer ones would bury what is said of them.
constexpr std::size_t citadoMaximo = 1000;

unsigned char octeto(std::string_view texto, std::size_t i) {
    return static_cast<unsigned char>(texto[i]);
}

/// Neither overlong forms, nor surrogates, nor anything past U+10FFFF.
bool segundoValido(unsigned char primero, unsigned char segundo) {
    switch (primero) {
    case 0xe0:
        return segundo >= 0xa0;
    case 0xed:
        return segundo <= 0x9f;
    case 0xf0:
        return segundo >= 0x90;
    case 0xf4:
        return segundo <= 0x8f;
    default:
        return true;
    }
}

/// Bytes of the UTF-8 character that `texto` (not empty) begins with; 0 if it
/// begins with none.
std::size_t largoUtf8(std::string_view texto) {
    const unsigned char primero = octeto(texto, 0);
    if (primero < 0x80)
        return 1;
    const std::size_t largo = primero >= 0xf0 ? 4 : primero >= 0xe0 ? 3 : 2;
    if (primero < 0xc2 || primero > 0xf4 || texto.size() < largo)
        return 0;
    for (std::size_t i = 1; i < largo; ++i)
        if ((octeto(texto, i) & 0xc0) != 0x80)
            return 0;
    return segundoValido(primero, octeto(texto, 1)) ? largo : 0;
}

bool cortaLinea(std::string_view caracter) {
    const unsigned char primero = octeto(caracter, 0);
    const bool c1 = primero == 0xc2 && octeto(caracter, 1) < 0xa0;
    return primero < 0x20 || primero == 0x7f || c1 || caracter == "\u2028" || caracter == "\u2029";
}

char32_t puntoDe(std::string_view caracter) {
    char32_t punto = octeto(caracter, 0);
    if (caracter.size() > 1)
        punto &= 0x7fU >> caracter.size();
    for (std::size_t i = 1; i < caracter.size(); ++i)
        punto = punto << 6U | (octeto(caracter, i) & 0x3fU);
    return punto;
}

/// Makes a terminal show what follows, or came before, in another order.
bool desordena(std::string_view caracter) {
    const char32_t punto = puntoDe(caracter);
    const auto entre = [punto](char32_t primero, char32_t ultimo) {
        return punto >= primero && punto <= ultimo;
    };
    return punto == 0x061c || entre(0x200e, 0x200f) || entre(0x202a, 0x202e) ||
           entre(0x2066, 0x2069);
}

/// How much of the beginning stays as it is at a glance: most names are that.
std::size_t largoLlano(std::string_view texto) {
    const auto fin = std::find_if(texto.begin(), texto.end(),
                                  [](char c) { return c < ' ' || c > '~' || c == '\\'; });
    return static_cast<std::size_t>(fin - texto.begin());
}

std::string enHexadecimal(std::string_view octetos) {
    std::string texto;
    for (const char c : octetos) {
        const auto valor = static_cast<unsigned char>(c);
        texto += {'\\', 'x', cifras[valor >> 4U], cifras[valor & 0xfU]};
    }
    return texto;
}

/// The beginning of an escaped text, `cuantos` characters at most, with neither a
/// character nor an escape torn.
std::string_view inicio(std::string_view texto, std::size_t cuantos) {
    std::size_t fin = 0;
    while (fin < texto.size()) {
        const auto resto = texto.substr(fin);
        const std::size_t escape = resto.starts_with("\\x") ? 4 : resto.starts_with('\\') ? 2 : 0;
        const std::size_t ancho = std::max<std::size_t>(escape, 1);
        if (ancho > cuantos)
            break;
        cuantos -= ancho;
        fin += escape > 0 ? escape : largoUtf8(resto);
    }
    return texto.substr(0, fin);
}

void parte(std::string &texto, std::string_view palabra) {
    const std::string partida =
        enHexadecimal(palabra.substr(0, 1)) + std::string(palabra.substr(1));
    for (auto i = texto.find(palabra); i != std::string::npos; i = texto.find(palabra))
        texto.replace(i, palabra.size(), partida);
}

} // namespace

Lector lectorDe(int fd) {
    return isatty(fd) == 1 ? Lector::terminal : Lector::programa;
}

std::string escapa(std::string_view nombre, Lector lector) {
    std::string texto;
    texto.reserve(nombre.size());
    while (true) {
        const std::size_t llanos =
            texto.empty() && nombre.starts_with(' ') ? 0 : largoLlano(nombre);
        texto += nombre.substr(0, llanos);
        nombre.remove_prefix(llanos);
        if (nombre.empty())
            return texto;
        const std::size_t largo = largoUtf8(nombre);
        const std::string_view caracter = nombre.substr(0, largo == 0 ? 1 : largo);
        if (caracter == "\\")
            texto += "\\\\";
        else if (largo == 0 || cortaLinea(caracter) || (caracter == " " && texto.empty()) ||
                 (lector == Lector::terminal && desordena(caracter)))
            texto += enHexadecimal(caracter);
        else
            texto += caracter;
        nombre.remove_prefix(caracter.size());
    }
}

std::optional<std::string> desescapa(std::string_view texto) {
    std::string nombre;
    while (!texto.empty()) {
        std::size_t largo = 1;
        char c = texto[0];
        if (c == '\\' && texto.starts_with("\\x") && texto.size() >= 4) {
            const auto alta = cifras.find(texto[2]);
            const auto baja = cifras.find(texto[3]);
            if (alta == std::string_view::npos || baja == std::string_view::npos)
                return std::nullopt;
            c = static_cast<char>(alta << 4U | baja);
            largo = 4;
        } else if (c == '\\') {
            if (!texto.starts_with("\\\\"))
                return std::nullopt;
            largo = 2;
        }
        nombre += c;
        texto.remove_prefix(largo);
    }
    return nombre;
}

std::string citado(std::string_view nombre) {
    static constexpr std::array<std::string_view, 4> palabras{"Error", "error", "contraseña",
                                                              "password"};
    const std::string entero = escapa(nombre, lectorDe(STDERR_FILENO));
    std::string texto(inicio(entero, citadoMaximo));
    const bool cortado = texto.size() < entero.size();
    for (const auto palabra : palabras)
        parte(texto, palabra);
    return "«" + texto + (cortado ? "…»" : "»");
}

} // namespace orcalin
