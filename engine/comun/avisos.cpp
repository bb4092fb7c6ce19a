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

void Avisos::remata(std::string_view hacer) const {
    if (cuantas == 1)
        throw Fallo("1 elemento no se pudo " + std::string(hacer) + ": " + primera);
    if (cuantas > 1)
        throw Fallo(std::to_string(cuantas) + " elementos no se pudieron " + std::string(hacer) +
                    "; el primero: " + primera);
}

} // namespace orcalin
