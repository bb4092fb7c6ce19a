#pragma once

#include "flujo/flujo.h"

#include <sys/types.h>

namespace orcalin {

/// The bytes of an open file from a place on. It keeps its own position, so
/// that several sources may read one descriptor, which must outlive them.
class FuenteFichero : public Fuente {
public:
    FuenteFichero(int descriptor, off_t desde)
        : fd(descriptor)
        , posicion(desde) {}

    std::size_t lee(Hueco hueco) override;

private:
    int fd;
    off_t posicion;
};

} // namespace orcalin
