#pragma once

#include <string>
#include <string_view>

namespace orcalin {

/// Turns a closed pipe and a file size limit into errors of write(2) instead
/// of a death that leaves things half done.
void ignoraSenalesDeEscritura();

/// From here on SIGTERM, SIGINT and SIGHUP remove the file named by
/// borraAlCancelar(), say «Error: » and `texto` on standard error, and end the
/// process with status 1. `texto` is plain words without quotes.
///
/// The handler does all this itself: the key derivation, one block of a high
/// compression level and a stuck disk would keep a flag waiting far too long.
void atiendeCancelacion(std::string_view texto);

/// Names the one file to remove on a signal, before it is created. False if the
/// path is longer than any that the system takes; nothing has changed then.
[[nodiscard]] bool borraAlCancelar(const std::string &ruta);

/// The point of no return: the three signals are ignored from here on.
void yaNoSeCancela();

} // namespace orcalin
