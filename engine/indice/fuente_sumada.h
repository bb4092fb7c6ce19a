#pragma once

#include "indice/indice.h"

namespace orcalin {

/// A tar stream on its way, whose frames are compared with the sums that an
/// index has of them.
class FuenteSumada : public Fuente {
public:
    /// `tar` is the stream from its beginning. `indice` must outlive this.
    FuenteSumada(std::unique_ptr<Fuente> tar, const Indice &indice);

    /// Never hands out bytes of two frames at once. Throws Fallo also for a frame
    /// that is not what it was, and for one that is too short.
    std::size_t lee(Hueco hueco) override;

private:
    void acabaMarco();

    std::unique_ptr<Fuente> tar;
    const Indice &indice;
    std::size_t marco = 0;
    std::uint64_t faltan; // bytes of the frame
    Sumador sumador;
};

} // namespace orcalin
