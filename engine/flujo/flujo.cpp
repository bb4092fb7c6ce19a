#include "flujo/flujo.h"

namespace orcalin {

std::size_t llena(Fuente &fuente, Hueco hueco) {
    std::size_t total = 0;
    while (total < hueco.size()) {
        const std::size_t leidos = fuente.lee(hueco.subspan(total));
        if (leidos == 0)
            break;
        total += leidos;
    }
    return total;
}

} // namespace orcalin
