#pragma once

#include "flujo/almacen.h"
#include "indice/asiento.h"
#include "indice/rotulo.h"

#include <memory>
#include <optional>
#include <vector>

namespace orcalin {

/// A frame and where it is.
struct MarcoSituado {
    std::uint64_t inicio = 0; ///< in the archive
    std::uint64_t desde = 0;  ///< in the tar stream
    std::optional<Suma> suma; ///< of what it holds; none in an archive of version 1
};

/// The index of an archive, read from its beginning to its end without ever
/// being in memory as a whole. Everything it says may be a lie.
class Indice {
public:
    /// The index that `rotulo` points to; `almacen` must outlive this. Reads
    /// the frames. With `exige`, the sum of the whole, where there is one, is
    /// compared at its end, which takes longer than to read it. Throws Fallo if
    /// the frames are damaged or do not add up.
    Indice(const Almacen &almacen, Envase envase, const Rotulo &rotulo, bool exige = false);

    /// In the order of the stream; at least one.
    [[nodiscard]] const std::vector<MarcoSituado> &marcos() const { return situados; }

    /// How many bytes of the tar stream the frame `marco` holds.
    [[nodiscard]] std::uint64_t crudoDe(std::size_t marco) const;

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
    void leeMarcos();
    std::uint64_t numero(std::uint64_t maximo);
    unsigned char octeto();
    bool repone();
    Suma leeSuma();
    bool leePermisos(Asiento &asiento);
    bool cabe(const Asiento &asiento);
    void acaba();

    std::unique_ptr<Fuente> fuente;
    std::vector<unsigned char> bloque;
    Octetos pendiente; // what of `bloque` has not been read
    std::vector<MarcoSituado> situados;
    MarcoSituado final;
    Rotulo rotulo;
    std::uint64_t faltan;      // entries
    std::uint64_t ocupado = 0; // bytes of the stream that those before take at least
    std::optional<Sumador> sumador; // where the sum is to be compared
};

} // namespace orcalin
