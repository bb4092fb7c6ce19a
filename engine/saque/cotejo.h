#pragma once

#include "indice/asiento.h"
#include "tar/entrada.h"

#include <cstdint>
#include <vector>

namespace orcalin {

/// Whether a tar stream and an index tell the same of the entries. Either is
/// told to it in whatever order, and neither is kept: all that it has is a
/// number for each, and where files are, for the links to them, of which most
/// archives have none.
class Cotejo {
public:
    void enElIndice(const Asiento &asiento) { indice += cifra(asiento); }

    /// `lugar`: where its headers begin. The root's own entry is in no index.
    void enElFlujo(const Entrada &entrada, std::uint64_t lugar);

    /// Once both were told.
    [[nodiscard]] bool coincide();

private:
    struct Fichero {
        std::uint64_t cifra; // of its path
        std::uint64_t bytes;
        std::uint64_t lugar;
    };
    struct Enlace {
        Asiento asiento;
        std::uint64_t destino; // likewise
    };

    static std::uint64_t cifra(const Asiento &asiento);

    std::uint64_t indice = 0;
    std::uint64_t flujo = 0;
    std::vector<Fichero> ficheros;
    std::vector<Enlace> enlaces; // in the order of the stream
};

} // namespace orcalin
