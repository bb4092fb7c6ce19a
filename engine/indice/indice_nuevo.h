#pragma once

#include "flujo/flujo.h"
#include "flujo/marco.h"
#include "indice/asiento.h"
#include "indice/rotulo.h"

#include <vector>

namespace orcalin {

/// The index of an archive in the making.
class IndiceNuevo {
public:
    void anade(Asiento asiento) { asientos.push_back(std::move(asiento)); }

    [[nodiscard]] std::size_t entradas() const { return asientos.size(); }

    /// What was written behind the frames.
    struct Final {
        Rotulo rotulo;
        std::uint64_t crc = 0; ///< CRC64 (as in xz) of index and trailer in the archive
    };

    /// Writes index and trailer behind the frames, which are all there is of
    /// the tar stream. To be called once.
    Final escribe(Receptor &abajo, Envase envase, const std::vector<Marco> &marcos);

private:
    [[nodiscard]] std::vector<unsigned char> codifica(const std::vector<Marco> &marcos) const;

    std::vector<Asiento> asientos;
};

} // namespace orcalin
