#include "saque/cotejo.h"

#include "comun/cifra.h"

#include <algorithm>
#include <array>
#include <unordered_map>

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
    const Asiento asiento{entrada.ruta, entrada.tipo, entrada.permisos,
                          static_cast<std::uint64_t>(entrada.bytes), lugar};
    if (entrada.tipo == 'h') {
        enlaces.push_back({asiento, cifraDe(entrada.enlace)});
        return;
    }
    if (entrada.tipo == '-')
        ficheros.push_back({cifraDe(entrada.ruta), asiento.bytes, lugar});
    flujo += cifra(asiento);
}

bool Cotejo::coincide() {
    const auto antes = [](const Fichero &uno, const Fichero &otro) {
        return uno.cifra < otro.cifra;
    };
    if (!enlaces.empty())
        std::sort(ficheros.begin(), ficheros.end(), antes);
    std::unordered_map<std::uint64_t, Fichero>
        enlazados; // by a link's path: links lead to them, too
    for (auto &[asiento, destino] : enlaces) {
        Fichero fichero{destino, 0, 0};
        const auto otro = enlazados.find(destino);
        const auto hallado = std::lower_bound(ficheros.begin(), ficheros.end(), fichero, antes);
        if (otro != enlazados.end())
            fichero = otro->second;
        else if (hallado != ficheros.end() && hallado->cifra == destino)
            fichero = *hallado;
        asiento.bytes = fichero.bytes;
        asiento.enlazado = fichero.lugar;
        enlazados.insert_or_assign(cifraDe(asiento.ruta), fichero);
        flujo += cifra(asiento);
    }
    enlaces.clear();
    return indice == flujo;
}

} // namespace orcalin
