#pragma once

#include "comun/fallo.h"

#include <stdexcept>

namespace orcalin {

/// That one entry cannot be written; the others may. what() says why, in
/// Spanish, without the entry's name.
class FalloDeEntrada : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// That nothing more can be written, whatever is wrong with the archive.
class FalloDeDisco : public Fallo {
    using Fallo::Fallo;
};

/// Throws what an errno value calls for: FalloDeDisco if it is about the disk,
/// where the next entry would fare no better, FalloDeEntrada otherwise.
[[noreturn]] void fallaEntrada(int numero);

/// Throws FalloDeDisco with «que: causa(numero)».
[[noreturn]] void fallaDisco(std::string_view que, int numero);

} // namespace orcalin
