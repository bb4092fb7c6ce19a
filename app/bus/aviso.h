#pragma once

#include <QString>

namespace bus {

/// Shows the user a text as a notification of the desktop, and waits a little
/// until the desktop has taken it. No desktop, no notification.
void avisa(const QString &texto);

} // namespace bus
