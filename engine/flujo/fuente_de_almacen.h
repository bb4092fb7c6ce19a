#pragma once

#include "flujo/almacen.h"

#include <vector>

namespace orcalin {

/// A stretch of a store, from its beginning to its end.
class FuenteDeAlmacen : public Fuente {
public:
    /// The bytes [desde, hasta); `hasta` is at most the store's length. The
    /// store must outlive this.
    FuenteDeAlmacen(const Almacen &almacen, std::uint64_t desde, std::uint64_t hasta);

    std::size_t lee(Hueco hueco) override;

private:
    std::size_t pide(Hueco hueco);

    const Almacen &almacen;
    std::uint64_t posicion;
    std::uint64_t hasta;
    std::vector<unsigned char> bloque;
    Octetos pendiente; // what of `bloque` has not been handed out
};

} // namespace orcalin
