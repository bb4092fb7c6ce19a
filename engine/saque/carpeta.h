#pragma once

#include "flujo/descriptor.h"

#include <memory>

namespace orcalin {

/// A folder below the destination, or the destination itself, open.
struct Carpeta {
    Descriptor fd;
    bool hereda = false; ///< what is made in it gets its group or its access list
};

using CarpetaAbierta = std::shared_ptr<const Carpeta>;

} // namespace orcalin
