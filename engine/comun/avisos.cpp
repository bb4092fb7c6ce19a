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

void Avisos::remata(std::string_view que) const {
    if (cuantas == 1)
        throw Fallo("1 elemento " + std::string(que) + ": " + primera);
    if (cuantas > 1)
        throw Fallo(std::to_string(cuantas) + " elementos " + std::string(que) +
                    "; el primero: " + primera);
}

} // namespace orcalin
