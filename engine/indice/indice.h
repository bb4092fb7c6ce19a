#pragma once

#include "flujo/almacen.h"
#include "indice/asiento.h"
#include "indice/rotulo.h"

#include <memory>
#include <vector>

namespace orcalin {

/// A frame and where it is.
struct MarcoSituado {
    std::uint64_t inicio = 0; ///< in the archive
    std::uint64_t desde = 0;  ///< in the tar stream
};

/// The index of an archive, read from its beginning to its end without ever
/// being in memory as a whole. Everything it says may be a lie.
class Indice {
public:
    /// The index that `rotulo` points to; `almacen` must outlive this. Reads
    /// the frames. Throws Fallo if they are damaged or do not add up.
    Indice(const Almacen &almacen, Envase envase, const Rotulo &rotulo);

    /// In the order of the stream; at least one.
    [[nodiscard]] const std::vector<MarcoSituado> &marcos() const { return situados; }

    /// Where the last of them ends.
    [[nodiscard]] const MarcoSituado &fin() const { return final; }

    /// The frame that holds the byte `lugar` of the tar stream.
    [[nodiscard]] std::size_t marcoDe(std::uint64_t lugar) const;

    /// Puts the next entry into `asiento`, which must be the one of the call
    /// before: their paths share a beginning. Places are within the stream,
    /// paths ascend. False at the end, when the index was verified as a whole.
    /// Throws Fallo if it is damaged.
    bool siguiente(Asiento &asiento);

private:
    void leeMarcos(const Rotulo &rotulo);
    std::uint64_t numero(std::uint64_t maximo);
    unsigned char octeto();
    bool repone();

    std::unique_ptr<Fuente> fuente;
    std::vector<unsigned char> bloque;
    Octetos pendiente; // what of `bloque` has not been read
    std::vector<MarcoSituado> situados;
    MarcoSituado final;
    std::uint64_t tar;
    std::uint64_t faltan; // entries
};

} // namespace orcalin
