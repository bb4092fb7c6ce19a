#include "tar/nombres_de_atributos.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t bloque = 512;

bool esLlano(const std::string &nombre) {
    return std::all_of(nombre.begin(), nombre.end(),
                       [](char c) { return c > ' ' && c < '\x7f' && c != '%' && c != '='; });
}

/// Where the extended header's records end, which begin behind its own block.
std::size_t finDeRegistros(const std::vector<unsigned char> &cabeceras) {
    constexpr std::size_t dondeLargo = 124; // 11 octal digits
    constexpr std::size_t cifras = 11;
    if (cabeceras.size() < bloque)
        return 0;
    std::size_t largo = 0;
    const auto *desde = reinterpret_cast<const char *>(cabeceras.data()) + dondeLargo;
    std::from_chars(desde, desde + cifras, largo, 8);
    return std::min(bloque + largo, cabeceras.size());
}

} // namespace

NombresDeAtributos::NombresDeAtributos(archive_entry *ficha) {
    std::vector<std::pair<std::string, std::string>> atributos;
    const char *nombre = nullptr;
    const void *valor = nullptr;
    std::size_t largo = 0;
    for (int n = archive_entry_xattr_reset(ficha); n > 0; --n) {
        archive_entry_xattr_next(ficha, &nombre, &valor, &largo);
        atributos.emplace_back(nombre, std::string(static_cast<const char *>(valor), largo));
        raros = raros || !esLlano(nombre);
    }
    if (!raros)
        return;
    archive_entry_xattr_clear(ficha);
    for (const auto &[suyo, contenido] : atributos)
        archive_entry_xattr_add_entry(
            ficha, (esLlano(suyo) ? suyo : std::string(suyo.size(), '_')).c_str(), contenido.data(),
            contenido.size());
    // The library hands out first what it got last.
    for (auto i = atributos.rbegin(); i != atributos.rend(); ++i)
        todos.push_back(std::move(i->first));
}

void NombresDeAtributos::repon(std::vector<unsigned char> &cabeceras) const {
    constexpr std::string_view clave = "SCHILY.xattr.";
    const std::string_view texto(reinterpret_cast<const char *>(cabeceras.data()),
                                 cabeceras.size());
    auto nombre = todos.begin();
    // A record: its length in decimal, a space, its key, an equals sign, its value.
    for (std::size_t i = bloque; i < finDeRegistros(cabeceras) && nombre != todos.end();) {
        std::size_t largo = 0;
        const auto *fin = std::from_chars(&texto[i], texto.data() + texto.size(), largo).ptr;
        const auto resto = texto.substr(static_cast<std::size_t>(fin - texto.data()) + 1);
        if (resto.starts_with(clave)) {
            const auto donde = static_cast<std::size_t>(resto.data() - texto.data()) + clave.size();
            std::copy(nombre->begin(), nombre->end(),
                      cabeceras.begin() + static_cast<std::ptrdiff_t>(donde));
            ++nombre;
        }
        i += std::max<std::size_t>(largo, 1);
    }
}

} // namespace orcalin
