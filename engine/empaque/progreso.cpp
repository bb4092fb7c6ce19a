#include "empaque/progreso.h"

#include "comun/consola.h"
#include "comun/marcha.h"
#include "comun/medidas.h"

#include <algorithm>
#include <string>

namespace orcalin {
namespace {

constexpr std::chrono::milliseconds intervalo{100};
constexpr std::uint64_t todo = 1000;      // thousandths
constexpr std::uint64_t deRelectura = 30; // of these: what reading back costs beside --max

std::uint64_t milesimasDe(std::uint64_t parte, std::uint64_t total) {
    if (total == 0)
        return todo;
    // Rounded down: 100.0 only when nothing is left.
    const double razon = static_cast<double>(parte) / static_cast<double>(total);
    return std::min(todo, static_cast<std::uint64_t>(razon * static_cast<double>(todo)));
}

} // namespace

Progreso::Progreso(bool pedido, const Plan &plan)
    : modo(hayTerminal() ? Modo::EnElSitio
           : pedido      ? Modo::Lineas
                         : Modo::Nada)
    , inicio(Reloj::now())
    , previstos(bytesPrevistos(plan)) {
    for (const auto &pieza : plan)
        ficheros += pieza.cuenta() ? 1 : 0;
}

Progreso::~Progreso() {
    if (modo == Modo::EnElSitio)
        borraRenglon();
}

void Progreso::derivaClave() const {
    if (modo == Modo::Lineas)
        diceLinea("deriving key");
    if (modo == Modo::EnElSitio)
        redibuja("Preparando el cifrado...");
}

void Progreso::termina(const Pieza &pieza, std::uint64_t hasta) {
    if (pieza.cuenta())
        finales.push_back(hasta);
}

void Progreso::avanza(std::uint64_t comprimidos, std::uint64_t releidos) {
    hechos = comprimidos;
    for (; !finales.empty() && finales.front() <= hechos; finales.pop_front())
        ++ficherosHechos;
    const auto ahora = Reloj::now();
    if (ahora < proxima)
        return;
    proxima = ahora + intervalo;
    // Extended headers were not foreseen: the end is said by acaba() alone.
    const auto partes = milesimasDe(hechos, previstos) * (todo - deRelectura) +
                        milesimasDe(releidos, previstos) * deRelectura;
    di(std::min(partes / todo, todo - 1));
}

void Progreso::acaba() {
    ficherosHechos = ficheros;
    di(todo);
}

void Progreso::di(std::uint64_t milesimas) {
    const std::string cuenta =
        std::to_string(ficherosHechos) + "/" + std::to_string(ficheros) + " ficheros";
    const std::string mebis = std::to_string(hechos / mebi) + " MiB";
    if (modo == Modo::Lineas)
        diceLinea(cuenta + " (" + std::to_string(milesimas / 10) + "." +
                  std::to_string(milesimas % 10) + "%), " + mebis);
    if (modo == Modo::EnElSitio)
        redibuja(
            renglonDeMarcha("Guardando", milesimas, cuenta + ", " + mebis, Reloj::now() - inicio));
}

} // namespace orcalin
