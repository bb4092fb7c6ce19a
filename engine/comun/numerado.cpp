#include "comun/numerado.h"

#include <climits>

namespace orcalin {
namespace {

/// The first `bytes` at most, without half a character at the end.
std::string_view cortado(std::string_view texto, std::size_t bytes) {
    if (texto.size() <= bytes)
        return texto;
    while (bytes > 0 && (static_cast<unsigned char>(texto[bytes]) & 0xc0U) == 0x80)
        --bytes;
    return texto.substr(0, bytes);
}

} // namespace

std::size_t lugarDeLaExtension(std::string_view nombre) {
    const auto punto = nombre.rfind('.');
    const bool ninguna = punto == std::string_view::npos || punto == 0 || nombre == "..";
    return ninguna ? nombre.size() : punto;
}

std::string numerado(std::string_view nombre, unsigned numero, bool carpeta) {
    std::string final = " (" + std::to_string(numero) + ")";
    auto tronco = nombre;
    if (!carpeta) {
        const auto extension = nombre.substr(lugarDeLaExtension(nombre));
        // One that fills the name alone is none.
        if (extension.size() + final.size() < NAME_MAX) {
            tronco.remove_suffix(extension.size());
            final += extension;
        }
    }
    return std::string(cortado(tronco, NAME_MAX - final.size())) + final;
}

} // namespace orcalin
