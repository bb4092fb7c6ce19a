#pragma once

#include "flujo/almacen.h"
#include "flujo/marco.h"

#include <optional>
#include <vector>

namespace orcalin {

/// The last bytes of an archive: where its index is.
struct Rotulo {
    std::uint64_t lugar = 0;    ///< of the index frame in the payload
    std::uint64_t largo = 0;    ///< of the index frame
    std::uint64_t crudo = 0;    ///< of the index, decompressed
    std::uint64_t entradas = 0; ///< how many
    std::uint64_t tar = 0;      ///< length of the tar stream
    unsigned version = 2;       ///< of the index, too: 1 knows no sums
    Suma suma{};                ///< of the index, decompressed

    bool operator==(const Rotulo &) const = default;
};

/// `rotulo` as a frame of the given kind, in the form of its version.
std::vector<unsigned char> enMarco(const Rotulo &rotulo, Envase envase);

/// The trailer at the end of `almacen`; none if there is none, or one that
/// cannot be true. What it says of the index is within the store's length.
/// Throws Fallo if the store cannot be read there.
std::optional<Rotulo> leeRotulo(const Almacen &almacen, Envase envase);

enum class EstadoRotulo { sano, danado, noHay };

/// Looks at every byte of the trailer and of what announces the index, also at
/// those that leeRotulo() can do without. A trailer counts as there, and as
/// damaged, if as little as its mark or its frame's header can be made out.
/// Throws Fallo if the store cannot be read there.
EstadoRotulo estadoDelRotulo(const Almacen &almacen, Envase envase);

} // namespace orcalin
