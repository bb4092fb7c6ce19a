#include "comun/avisos.h"

#include "comun/consola.h"
#include "comun/fallo.h"

namespace orcalin {

void Avisos::avisa(std::string_view texto) {
    diceLinea("Aviso: " + std::string(texto));
}

void Avisos::falta(std::string_view texto) {
    if (cuantas++ == 0)
        primera = texto;
    avisa(texto);
}

void Avisos::remata(std::string_view hacer, std::string_view ademas) const {
    if (cuantas == 0)
        return;
    const std::string que = cuantas == 1 ? "1 elemento no se pudo "
                                         : std::to_string(cuantas) + " elementos no se pudieron ";
    const std::string cual = cuantas == 1 ? ": " : "; el primero: ";
    throw Fallo(que + std::string(hacer) + cual + primera + std::string(ademas));
}

} // namespace orcalin
