#include "ordenes/ordenes.h"

#include "comun/consola.h"
#include "comun/texto.h"
#include "saque/archivo.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

#include <algorithm>
#include <array>

namespace orcalin {
namespace {

constexpr std::size_t anchoBytes = 10;

std::string permisosEnOctal(mode_t permisos) {
    std::array<char, 4> cifras{};
    for (auto i = cifras.rbegin(); i != cifras.rend(); ++i, permisos >>= 3U)
        *i = static_cast<char>('0' + (permisos & 7U));
    return {cifras.begin(), cifras.end()};
}

std::string linea(const Entrada &entrada) {
    const std::string bytes = std::to_string(entrada.bytes);
    const std::string margen(anchoBytes - std::min(anchoBytes, bytes.size()), ' ');
    return entrada.tipo + permisosEnOctal(entrada.permisos) + " " + margen + bytes + " " +
           escapa(entrada.ruta);
}

} // namespace

void lista(const PedidoListar &pedido) {
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    LectorTar lector(archivo.tar());
    std::vector<Entrada> entradas;
    while (archive_entry *ficha = lector.siguiente()) {
        Entrada entrada = describe(ficha);
        if (!entrada.ruta.empty())
            entradas.push_back(std::move(entrada));
    }
    std::stable_sort(entradas.begin(), entradas.end(),
                     [](const Entrada &a, const Entrada &b) { return a.ruta < b.ruta; });
    Salida salida;
    for (const auto &entrada : entradas)
        salida.linea(linea(entrada));
    salida.vacia();
}

} // namespace orcalin
