#pragma once

#include <QString>

/// Why the engine could not be started, in the user's language: the system's
/// own texts depend on translations that are rarely installed. `fallo`: an
/// errno value.
QString motivoDeArranque(int fallo);

/// What the jobs that read an archive say when there is no engine, and when it
/// cannot be started.
QString sinMotor();
QString noArranca();
