#pragma once

#include "indice/asiento.h"
#include "tar/entrada.h"

#include <cstdint>
#include <unordered_map>

namespace orcalin {

/// Whether a tar stream and an index tell the same of the entries. Either is
/// told to it in whatever order, and neither is kept: all that it has is a
/// number for each, and where files are, for the links to them.
class Cotejo {
public:
    void enElIndice(const Asiento &asiento) { indice += cifra(asiento); }

    /// `lugar`: where its headers begin. The root's own entry is in no index.
    void enElFlujo(const Entrada &entrada, std::uint64_t lugar);

    [[nodiscard]] bool coincide() const { return indice == flujo; }

private:
    struct Fichero {
        std::uint64_t bytes;
        std::uint64_t lugar;
    };

    static std::uint64_t cifra(const Asiento &asiento);

    std::uint64_t indice = 0;
    std::uint64_t flujo = 0;
    std::unordered_map<std::uint64_t, Fichero> ficheros; // by cifraDe() of their paths
};

} // namespace orcalin
