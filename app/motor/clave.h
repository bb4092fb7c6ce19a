#pragma once

#include <QByteArray>
#include <QString>

/// The file that hands a password to the engine: a password never stands on a
/// command line, where every user of the machine could read it. Any thread.
namespace clave {

/// Writes the password (UTF-8, no line end) to a new file "okz-" + UUID of the
/// temporary folder and returns its path. Only the owner can read it, from the
/// first byte on. A failure is not told: the path is returned all the same,
/// nothing half-written stays, and the engine reports what it finds.
QByteArray escribe(const QString &contrasena);

/// Removes such a file; a failure is ignored. An empty path does nothing.
void quita(const QByteArray &ruta);

} // namespace clave
