#include "flujo/descompresion.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/fuente_xz.h"
#include "flujo/fuente_zstd.h"

#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 256 * kibi;

} // namespace

std::unique_ptr<Fuente> descomprime(Envase envase, std::unique_ptr<Fuente> comprimida) {
    if (envase == Envase::xz)
        return std::make_unique<FuenteXz>(std::move(comprimida));
    return std::make_unique<FuenteZstd>(std::move(comprimida));
}

bool seLeeComo(Fuente &tar, std::uint64_t crudo, const std::optional<Suma> &suma) {
    try {
        Bloque bloque(largoBloque);
        Sumador sumador;
        std::uint64_t total = 0;
        while (const auto leidos = tar.lee(bloque)) {
            sumador.anade(Octetos(bloque).first(leidos));
            total += leidos;
        }
        return total == crudo && (!suma || *suma == sumador.acaba());
    } catch (const Fallo &) {
        return false;
    }
}

} // namespace orcalin
