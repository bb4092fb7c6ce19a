#include "tar/marca.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace orcalin {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view registro = "50 comment=OKZindex 2: an index ends this archive\n";
constexpr std::size_t lugarDelContenido = 512;

// Where a field of the header is, and what is in it. The library that writes
// all other headers has no way to write a global one.
constexpr std::array<std::pair<std::size_t, std::string_view>, 9> campos{{
    {0, "OKZindex"sv},        // name
    {100, "0000644\0"sv},     // mode
    {108, "0000000\0"sv},     // owner
    {116, "0000000\0"sv},     // group
    {124, "00000000062\0"sv}, // length of the record, octal
    {136, "00000000000\0"sv}, // time
    {148, "007450\0 "sv},     // sum of all bytes of the header, this field taken for spaces
    {156, "g"sv},             // global header
    {257, "ustar\00000"sv},   // what it is, version
}};
static_assert(registro.size() == 062);

} // namespace

Bloque marcaDeIndice() {
    Bloque marca(largoMarca);
    for (const auto &[lugar, texto] : campos)
        std::copy(texto.begin(), texto.end(), marca.begin() + static_cast<std::ptrdiff_t>(lugar));
    std::copy(registro.begin(), registro.end(), marca.begin() + lugarDelContenido);
    return marca;
}

bool llevaMarca(Octetos inicio) {
    constexpr std::size_t lugarDelTipo = 156;
    const std::string_view texto(reinterpret_cast<const char *>(inicio.data()), inicio.size());
    return inicio.size() >= largoMarca && texto[lugarDelTipo] == 'g' &&
           texto.substr(lugarDelContenido).starts_with(registro);
}

} // namespace orcalin
