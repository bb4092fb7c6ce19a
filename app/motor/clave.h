#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// The file that hands a password to the engine: a password never stands on a
/// command line, where every user of the machine could read it. Any thread.
namespace clave {

/// Writes the password (UTF-8, no line end) to a new file "okz-" + UUID of the
/// temporary folder and returns its path. Only the owner can read it, from the
/// first byte on. A failure is not told: the path is returned all the same,
/// nothing half-written stays, and the engine reports what it finds.
///
/// An absent password and an empty one are the same: nothing is written, and
/// the path is empty.
QByteArray escribe(const std::optional<QString> &contrasena);

/// The options that name such a file to the engine; none for an empty path.
QList<QByteArray> argumentos(const QByteArray &ruta);

/// Removes such a file; a failure is ignored. An empty path does nothing.
void quita(const QByteArray &ruta);

} // namespace clave
