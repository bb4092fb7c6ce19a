#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The copies of entries that the engine extracts to be opened or dragged, and
/// the folder of them all. It lies in the temporary folder, which the users of a
/// machine may share. Any thread.
namespace copias {

/// The path of the folder: "orcalin-ver" in the temporary one.
QByteArray carpeta();

/// Makes it if it is missing, and a new folder of a unique name inside, which
/// is returned. None when it cannot be made, or when what has its name is not a
/// real folder that is this user's alone: whoever put that there could read the
/// copies. That the new folder cannot be made inside is not told: the engine
/// reports what it finds.
std::optional<QByteArray> nuevaCarpeta(const QByteArray &visor);

/// What to say when there is none.
QString sinCarpeta();

/// Takes it out of the way, if it is a real folder of this user's: copies made
/// from now on go into another. Never takes long.
void aparta(const QByteArray &visor);

/// Removes what was taken out of the way, also by a run that did not come to
/// remove it.
void limpiaApartadas(const QByteArray &visor);

/// Removes a folder of copies with all it holds, if it is a real one of this
/// user's; what cannot be removed stays.
void limpia(const QByteArray &carpeta);

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

} // namespace copias
