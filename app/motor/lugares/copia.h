#pragma once

#include <QByteArray>

#include <optional>

/// The copy of an entry that the engine was to extract. Any thread.
namespace copia {

/// A symbolic link counts as there if what it leads to is, or as it stands.
enum class Enlaces { Sigue, Tal };

/// Where the entry `ruta`, as the engine listed it (UTF-8), lies below
/// `carpeta`; none when nothing is there. A path that would lead out of the
/// folder finds nothing, nor does one that names the folder itself.
///
/// An engine may list a name that does not fit into a line of text with escapes
/// (`\\` for a backslash, `\xNN` for a byte), and the copy has the real name. So
/// a path is tried as it stands and then with the escapes undone; with an
/// engine that does not escape the first finds it.
std::optional<QByteArray> busca(const QByteArray &carpeta, const QByteArray &ruta,
                                Enlaces enlaces = Enlaces::Sigue);

/// Where that entry is going to lie, before it does: an engine that escapes is
/// taken for granted.
QByteArray prevista(const QByteArray &carpeta, const QByteArray &ruta);

/// Makes the copy read-only for everybody. A link is left alone: what it leads
/// to may be anything of the user's. A failure is ignored.
void protege(const QByteArray &copia);

} // namespace copia
