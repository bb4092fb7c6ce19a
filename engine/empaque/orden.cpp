#include "empaque/orden.h"

#include <algorithm>
#include <tuple>

namespace orcalin {
namespace {

/// What a piece is sorted by, worked out once.
struct Clave {
    int grupo = 0;
    Trato trato = Trato::otro;
    std::ptrdiff_t turno = 0; // paths come in order as it is
    std::size_t pieza = 0;
};

Clave claveDe(const Pieza &pieza, std::size_t i) {
    const auto turno = static_cast<std::ptrdiff_t>(i);
    if (S_ISREG(pieza.clase))
        return {0, pieza.trato, turno, i};
    if (S_ISLNK(pieza.clase))
        return {1, Trato::otro, turno, i};
    return {2, Trato::otro, -turno, i};
}

} // namespace

void ordena(Plan &plan) {
    std::vector<Clave> claves;
    claves.reserve(plan.size());
    for (const auto &pieza : plan)
        claves.push_back(claveDe(pieza, claves.size()));
    std::sort(claves.begin(), claves.end(), [](const Clave &a, const Clave &b) {
        return std::tie(a.grupo, a.trato, a.turno) < std::tie(b.grupo, b.trato, b.turno);
    });
    Plan ordenado;
    ordenado.reserve(plan.size());
    for (const auto &clave : claves)
        ordenado.push_back(std::move(plan[clave.pieza]));
    plan = std::move(ordenado);
}

} // namespace orcalin
