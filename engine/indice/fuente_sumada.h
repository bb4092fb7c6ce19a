#pragma once

#include "indice/indice.h"

#include <functional>

namespace orcalin {

/// A tar stream made of the frames that an index names, each read by itself from
/// the place that it is said to have, and compared with the sum that it is said
/// to have.
class FuenteSumada : public Fuente {
public:
    /// What the frame of that number holds.
    using AbreMarco = std::function<std::unique_ptr<Fuente>(std::size_t)>;

    /// `indice` must outlive this.
    FuenteSumada(AbreMarco abre, const Indice &indice);

    /// Never hands out bytes of two frames at once. Throws Fallo also for a frame
    /// that is not what it was, and for one that is longer or shorter.
    std::size_t lee(Hueco hueco) override;

private:
    void acabaMarco();

    AbreMarco abre;
    const Indice &indice;
    std::size_t marco = 0;
    std::unique_ptr<Fuente> tar; // of that frame, once it was asked for
    std::uint64_t faltan = 0;    // bytes of it
    Sumador sumador;
};

} // namespace orcalin
