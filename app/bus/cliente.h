#pragma once

#include "inicio/peticion.h"

namespace bus {

/// Has a service called, as menu entries of other programs do, and returns the
/// exit status. The application that runs does it, or the one that the bus can
/// start; where neither is to be had, one is started here and left alone. What
/// goes wrong is told on standard error and as a notification, for there may be
/// no terminal. Needs a QCoreApplication and no display.
int cliente(const Peticion &peticion);

/// Tells the user a text in those two ways; for where there is no window. Waits
/// a little until the desktop has taken it.
void quejate(const QString &texto);

} // namespace bus
