#pragma once

#include "estado.h"

#include <QByteArray>
#include <QList>
#include <QStringView>

/// What the engine says while it compresses. Any thread; nothing is kept
/// between calls.
namespace progreso {

/// The state that one line of the engine's reports, or none for a line that
/// says nothing of the progress. `transcurrido`: seconds since the job started.
std::optional<estados::Trabajando> lee(QStringView linea, double transcurrido);

/// The states that a chunk reports, in the order of its lines. A chunk that is
/// not valid UTF-8 reports none; a line that the chunk's border cuts is two
/// fragments, each read for what it is.
QList<estados::Trabajando> leeTrozo(const QByteArray &trozo, double transcurrido);

} // namespace progreso
