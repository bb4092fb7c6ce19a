#include "ordenes/ordenes.h"

#include "comun/avisos.h"
#include "comun/consola.h"
#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/texto.h"
#include "saque/archivo.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <unistd.h>
#include <vector>

namespace orcalin {
namespace {

constexpr std::size_t anchoBytes = 10;
// Of lines held back until the index proves sound; after that many it is
// believed.
constexpr std::size_t reserva = 32 * mebi;

std::string linea(const Asiento &asiento) {
    std::string texto(1, asiento.tipo);
    constexpr unsigned bits = 3;
    for (int i = 3; i >= 0; --i)
        texto +=
            static_cast<char>('0' + (asiento.permisos >> static_cast<unsigned>(i) * bits & 7U));
    std::array<char, 20> cifras{};
    const auto fin = std::to_chars(cifras.data(), cifras.data() + cifras.size(), asiento.bytes).ptr;
    const auto largo = static_cast<std::size_t>(fin - cifras.data());
    texto.append(1 + anchoBytes - std::min(anchoBytes, largo), ' ');
    texto.append(cifras.data(), largo);
    texto += ' ';
    static const Lector lector = lectorDe(STDOUT_FILENO);
    return texto += escapa(asiento.ruta, lector);
}

/// False if the index is of no help; nothing was printed then.
bool porIndice(const Archivo &archivo) {
    const auto indice = archivo.indice();
    if (!indice)
        return false;
    Salida salida(reserva);
    try {
        for (Asiento asiento; indice->siguiente(asiento);)
            salida.linea(linea(asiento));
    } catch (const Fallo &) {
        if (!salida.olvida())
            throw;
        return false;
    }
    salida.vacia();
    return true;
}

std::vector<Asiento> recorre(const Archivo &archivo) {
    LectorTar lector(archivo.tar());
    std::vector<Asiento> asientos;
    std::map<std::string, std::uint64_t> ficheros; // path and size, for the links to them
    while (archive_entry *ficha = lector.siguiente()) {
        Entrada entrada = describe(ficha);
        if (entrada.ruta.empty())
            continue;
        auto bytes = static_cast<std::uint64_t>(entrada.bytes);
        if (entrada.tipo == '-')
            ficheros[entrada.ruta] = bytes;
        else if (const auto i = ficheros.find(entrada.enlace);
                 entrada.tipo == 'h' && i != ficheros.end())
            bytes = i->second;
        asientos.push_back({std::move(entrada.ruta), entrada.tipo, entrada.permisos, bytes});
    }
    std::stable_sort(asientos.begin(), asientos.end(),
                     [](const Asiento &a, const Asiento &b) { return a.ruta < b.ruta; });
    return asientos;
}

} // namespace

void lista(const PedidoListar &pedido) {
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    if (porIndice(archivo))
        return;
    Avisos avisos;
    avisaSinIndice(avisos);
    Salida salida;
    for (const auto &asiento : recorre(archivo))
        salida.linea(linea(asiento));
    salida.vacia();
}

} // namespace orcalin
