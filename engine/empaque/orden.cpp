#include "empaque/orden.h"

#include "empaque/clases.h"

#include <algorithm>
#include <tuple>

namespace orcalin {
namespace {

/// What a piece is sorted by, worked out once.
struct Clave {
    int grupo = 0;
    Trato trato = Trato::otro;
    std::string extension;
    std::size_t pieza = 0;
};

int grupoDe(const Pieza &pieza) {
    return S_ISDIR(pieza.clase) ? 0 : S_ISLNK(pieza.clase) ? 1 : 2;
}

} // namespace

void ordena(Plan &plan) {
    std::vector<Clave> claves(plan.size());
    for (std::size_t i = 0; i < plan.size(); ++i) {
        const Pieza &pieza = plan[i];
        claves[i] = {grupoDe(pieza), pieza.trato, {}, i};
        if (S_ISREG(pieza.clase))
            claves[i].extension = extension(pieza.nombre);
    }
    // Paths come in order as it is.
    std::sort(claves.begin(), claves.end(), [](const Clave &a, const Clave &b) {
        return std::tie(a.grupo, a.trato, a.extension, a.pieza) <
               std::tie(b.grupo, b.trato, b.extension, b.pieza);
    });
    Plan ordenado;
    ordenado.reserve(plan.size());
    for (const auto &clave : claves)
        ordenado.push_back(std::move(plan[clave.pieza]));
    plan = std::move(ordenado);
}

} // namespace orcalin
