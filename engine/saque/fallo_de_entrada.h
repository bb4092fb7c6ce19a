#pragma once

#include <stdexcept>

namespace orcalin {

/// That one entry cannot be written; the others may. what() says why, in
/// Spanish, without the entry's name.
class FalloDeEntrada : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws what an errno value calls for: Fallo if it is about the disk, where
/// the next entry would fare no better, FalloDeEntrada otherwise.
[[noreturn]] void fallaEntrada(int numero);

} // namespace orcalin
