#pragma once

#include "flujo/flujo.h"

#include <array>
#include <sodium.h>

namespace orcalin {

/// BLAKE2b of 32 bytes: nobody finds other data with the same sum, so data with
/// the right one are the right data.
using Suma = std::array<unsigned char, 32>;

/// Takes the sum of data that come in pieces.
class Sumador {
public:
    /// Throws std::bad_alloc if the library cannot be used at all.
    Sumador();

    void anade(Octetos datos);

    /// The sum of everything since the beginning, or since the last call.
    Suma acaba();

private:
    void empieza();

    crypto_generichash_state estado{};
};

/// The sum of data that are all at hand.
Suma sumaDe(Octetos datos);

} // namespace orcalin
