#pragma once

#include "saque/archivo.h"
#include "saque/mapa.h"
#include "tar/lector_tar.h"

#include <functional>
#include <vector>

namespace orcalin {

/// One walk over every entry of an archive that can be read, in the order of
/// the stream.
class Pasada {
public:
    using Cada =
        std::function<void(LectorTar &, archive_entry *, const Entrada &, std::uint64_t lugar)>;

    /// Where entries begin that could not be read, or not whole.
    struct Tramo {
        std::uint64_t desde;
        std::uint64_t hasta;
    };

    /// `indice` (which must pass Marcos::caben()) and its `mapa` are null for an
    /// archive that is read as a stream. All must outlive this.
    Pasada(const Archivo &archivo, const Indice *indice, const Mapa *mapa);

    /// Calls `cada` for each. By an index a damaged frame costs only the entries
    /// that lie in it with any part: what `cada` was reading ends by an
    /// exception that it must let through, and the walk goes on behind it. As a
    /// stream damage ends the walk. Throws Fallo, and what `cada` throws.
    void recorre(const Cada &cada);

    /// Whether there was a damaged frame.
    [[nodiscard]] bool danada() const { return huboDano; }

    [[nodiscard]] const std::vector<Tramo> &perdidos() const { return tramos; }

private:
    void recorre(LectorTar &lector, std::uint64_t origen, const Cada &cada);

    const Archivo &archivo;
    const Indice *indice;
    const Mapa *mapa;
    std::uint64_t sinLeer = 0; // entries that begin before are done with
    bool huboDano = false;
    std::vector<Tramo> tramos;
};

} // namespace orcalin
