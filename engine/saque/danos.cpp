#include "saque/danos.h"

#include "flujo/descompresion.h"

#include <algorithm>

namespace orcalin {
namespace {

struct Tramo {
    std::uint64_t desde;
    std::uint64_t hasta;
};

/// The stretches of the tar stream that are lost.
std::vector<Tramo> perdidos(const Archivo &archivo, const Indice &indice) {
    std::vector<Tramo> tramos;
    const auto &marcos = indice.marcos();
    for (std::size_t i = 0; i < marcos.size(); ++i) {
        if (!seLeeComo(*archivo.marco(indice, i), indice.crudoDe(i), marcos[i].suma))
            tramos.push_back({marcos[i].desde, marcos[i].desde + indice.crudoDe(i)});
    }
    return tramos;
}

/// Where entries begin, in order, and where the last one ends.
std::vector<std::uint64_t> lugares(Indice &indice) {
    std::vector<std::uint64_t> todos;
    for (Asiento asiento; indice.siguiente(asiento);)
        todos.push_back(asiento.lugar);
    todos.push_back(indice.fin().desde);
    std::sort(todos.begin(), todos.end());
    return todos;
}

} // namespace

std::vector<std::string> entradasDanadas(const Archivo &archivo) {
    std::vector<std::string> rutas;
    const auto primera = archivo.indice();
    const auto segunda = archivo.indice();
    if (!primera || !segunda)
        return rutas;
    const auto tramos = perdidos(archivo, *primera);
    const auto limites = lugares(*primera);
    const auto danada = [&tramos, &limites](std::uint64_t lugar) {
        const auto tras = std::upper_bound(limites.begin(), limites.end(), lugar);
        const auto hasta = tras == limites.end() ? lugar : *tras;
        return std::any_of(tramos.begin(), tramos.end(), [lugar, hasta](const Tramo &tramo) {
            return lugar < tramo.hasta && hasta > tramo.desde;
        });
    };
    for (Asiento asiento; segunda->siguiente(asiento);)
        if (danada(asiento.lugar) || (asiento.tipo == 'h' && danada(asiento.enlazado)))
            rutas.push_back(asiento.ruta);
    return rutas;
}

} // namespace orcalin
