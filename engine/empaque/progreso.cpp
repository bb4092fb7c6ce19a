#include "empaque/progreso.h"

#include "comun/consola.h"
#include "comun/medidas.h"

#include <algorithm>
#include <string>

namespace orcalin {
namespace {

constexpr std::chrono::milliseconds intervalo{100};
constexpr std::uint64_t todo = 1000; // thousandths

std::uint64_t milesimasDe(std::uint64_t parte, std::uint64_t total) {
    if (total == 0)
        return todo;
    // Rounded down: 100.0 only when nothing is left.
    const double razon = static_cast<double>(parte) / static_cast<double>(total);
    return std::min(todo, static_cast<std::uint64_t>(razon * static_cast<double>(todo)));
}

} // namespace

Progreso::Progreso(bool seVe, const Plan &plan)
    : visible(seVe) {
    constexpr std::uint64_t bloque = 512;
    for (const auto &pieza : plan) {
        ficheros += pieza.cuenta() ? 1 : 0;
        // A header, and the content up to the end of its last block.
        previstos += bloque + (pieza.bytes + bloque - 1) / bloque * bloque;
    }
}

void Progreso::derivaClave() const {
    if (visible)
        diceLinea("deriving key");
}

void Progreso::termina(const Pieza &pieza, std::uint64_t hasta) {
    if (pieza.cuenta())
        finales.push_back(hasta);
}

void Progreso::avanza(std::uint64_t comprimidos) {
    hechos = comprimidos;
    for (; !finales.empty() && finales.front() <= hechos; finales.pop_front())
        ++ficherosHechos;
    const auto ahora = Reloj::now();
    if (ahora < proxima)
        return;
    proxima = ahora + intervalo;
    // Extended headers were not foreseen: the end is said by acaba() alone.
    di(std::min(milesimasDe(hechos, previstos), todo - 1));
}

void Progreso::acaba() {
    ficherosHechos = ficheros;
    di(todo);
}

void Progreso::di(std::uint64_t milesimas) {
    if (!visible)
        return;
    diceLinea(std::to_string(ficherosHechos) + "/" + std::to_string(ficheros) + " ficheros (" +
              std::to_string(milesimas / 10) + "." + std::to_string(milesimas % 10) + "%), " +
              std::to_string(hechos / mebi) + " MiB");
}

} // namespace orcalin
