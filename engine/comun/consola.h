#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orcalin {

/// Sees to it that each of the three standard streams is there, as a device that
/// gives an error where it was closed: a file opened later would get its number,
/// and what is said would be written into it. To be called before anything is
/// opened. False if it cannot be.
[[nodiscard]] bool ocupaLosEstandar();

/// Writes `texto` and a newline to standard error with one write(2), so that a
/// reader never gets a torn line. If nobody reads, nothing happens.
void diceLinea(std::string_view texto);

/// The same for the last words of a process that must end now: waits long neither
/// for another thread nor for a reader. Nothing else is said from here on.
void diceYa(std::string_view texto);

/// Whether standard error is a terminal on which a line can be redrawn.
bool hayTerminal();

/// Shows `texto`, cut to the terminal's width, on its last line in place of what
/// was shown there before; diceLinea() takes it away first. Only on a terminal.
/// Any thread.
void redibuja(std::string_view texto);

/// Takes it away.
void borraRenglon();

/// Standard output in big blocks.
class Salida {
public:
    /// Holds up to `reserva` bytes back, so that a failure on the way leaves
    /// nothing printed.
    explicit Salida(std::size_t reserva = 0);

    /// Adds a line. Throws Fallo when it cannot be written.
    void linea(std::string_view texto);

    /// Adds text as it is. Throws Fallo when it cannot be written.
    void texto(std::string_view texto);

    /// Forgets what was not written yet. False if something was already.
    bool olvida();

    /// Writes what is still held. Throws Fallo when it cannot be written; what
    /// was not flushed at destruction is lost.
    void vacia();

private:
    std::size_t reserva;
    bool empezada = false;
    std::string pendiente;
};

} // namespace orcalin
