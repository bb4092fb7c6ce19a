#pragma once

#include <string>
#include <string_view>

namespace orcalin {

/// Writes `texto` and a newline to standard error with one write(2), so that a
/// reader never gets a torn line. If nobody reads, nothing happens.
void diceLinea(std::string_view texto);

/// Standard output in big blocks.
class Salida {
public:
    /// Adds a line. Throws Fallo when it cannot be written.
    void linea(std::string_view texto);

    /// Writes what is still held. Throws Fallo when it cannot be written; what
    /// was not flushed at destruction is lost.
    void vacia();

private:
    std::string pendiente;
};

} // namespace orcalin
