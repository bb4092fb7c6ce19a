#include "flujo/fuente_de_almacen.h"

#include "comun/medidas.h"

#include <algorithm>

namespace orcalin {
namespace {

// A whole number of the chunks of an encrypted store.
constexpr std::size_t largoBloque = 256 * kibi;

} // namespace

FuenteDeAlmacen::FuenteDeAlmacen(const Almacen &almacenDado, std::uint64_t desde,
                                 std::uint64_t hastaDado)
    : almacen(almacenDado)
    , posicion(desde)
    , hasta(hastaDado) {}

std::size_t FuenteDeAlmacen::lee(Hueco hueco) {
    if (pendiente.empty() && hueco.size() >= largoBloque)
        return pide(hueco);
    if (pendiente.empty()) {
        bloque.resize(largoBloque);
        pendiente = Octetos(bloque).first(pide(bloque));
    }
    const auto parte = pendiente.first(std::min(pendiente.size(), hueco.size()));
    std::copy(parte.begin(), parte.end(), hueco.begin());
    pendiente = pendiente.subspan(parte.size());
    return parte.size();
}

/// Stops at round places of the store, so that no chunk is decrypted twice.
std::size_t FuenteDeAlmacen::pide(Hueco hueco) {
    const std::uint64_t lleno = posicion + hueco.size();
    const std::uint64_t tope = std::min(hasta, lleno - lleno % largoBloque);
    const auto leidos = almacen.lee(posicion, hueco.first(tope - posicion));
    posicion += leidos;
    return leidos;
}

} // namespace orcalin
