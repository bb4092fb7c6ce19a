#include "saque/cotejo.h"

#include "comun/cifra.h"

#include <array>

namespace orcalin {

/// Any number of entries as one number, the same in whatever order they come.
std::uint64_t Cotejo::cifra(const Asiento &asiento) {
    const std::array<std::uint64_t, 5> numeros{static_cast<unsigned char>(asiento.tipo),
                                               asiento.permisos, asiento.bytes, asiento.lugar,
                                               asiento.enlazado};
    std::string texto(reinterpret_cast<const char *>(numeros.data()), sizeof numeros);
    return cifraDe(texto += asiento.ruta);
}

void Cotejo::enElFlujo(const Entrada &entrada, std::uint64_t lugar) {
    if (entrada.ruta.empty())
        return;
    Fichero fichero{static_cast<std::uint64_t>(entrada.bytes), lugar};
    Asiento asiento{entrada.ruta, entrada.tipo, entrada.permisos, fichero.bytes, lugar};
    if (entrada.tipo == 'h') {
        fichero = ficheros[cifraDe(entrada.enlace)];
        asiento.bytes = fichero.bytes;
        asiento.enlazado = fichero.lugar;
    }
    if (entrada.tipo == '-' || entrada.tipo == 'h')
        ficheros[cifraDe(entrada.ruta)] = fichero;
    flujo += cifra(asiento);
}

} // namespace orcalin
