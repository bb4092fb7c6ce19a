#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

/// File URLs and the paths they stand for.
///
/// A path is bytes and need not be valid UTF-8; a QString cannot hold such a
/// name, while a file URL keeps it percent-encoded. So everything here goes
/// through the encoded form, and only texts for the user are decoded.
/// Any thread.
namespace ruta {

/// The path of a file URL, byte for byte, without a trailing slash (but "/"
/// stays). Empty when the URL is not a file URL.
QByteArray nativa(const QUrl &url);

/// The file URL of a path; the path is taken as it stands.
QUrl url(const QByteArray &nativa);

/// The same for a path that Qt made (a file dialog, the temporary folder).
QUrl url(const QString &ruta);

/// The file URL that another program sent as a text, or none: it is something
/// else, or no file can have that path.
std::optional<QUrl> deUri(const QString &uri);

/// The last path component, for display on one line: control characters and
/// what is not valid UTF-8 show as U+FFFD.
QString ultimoComponente(const QUrl &url);

/// Whether the path's extension is "okz" in any case. A name that is nothing
/// but ".okz" or "okz" has no extension.
bool esArchivo(const QUrl &url);

/// The temporary folder, without a trailing slash. Also when it does not exist:
/// then nothing can be written there, which is better than somewhere else.
QByteArray temporal();

/// A name that nothing else has: a random UUID, 36 characters in upper case.
QByteArray nombreUnico();

/// Whether a name has that form.
bool esNombreUnico(const QByteArray &nombre);

} // namespace ruta
