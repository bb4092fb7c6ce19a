#pragma once

#include <string>
#include <string_view>

namespace orcalin {

/// `nombre` with a number, as in «foto (2).jpg»: before the extension, of a
/// folder at the end. A name that would be too long for a disk is cut before
/// the number, between two characters.
std::string numerado(std::string_view nombre, unsigned numero, bool carpeta);

/// Where in `nombre` its extension begins; its length if it has none. The dot
/// of a hidden file begins no extension.
std::size_t lugarDeLaExtension(std::string_view nombre);

} // namespace orcalin
