#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The folder of the copies extracted for viewing. It lies in the temporary
/// folder, which the users of a machine may share. Any thread.
namespace visor {

/// Its path: "orcalin-ver" in the temporary folder.
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

} // namespace visor
