#pragma once

struct Ficha;
class QWindow;

/// Shows the window if it is hidden or minimised, and asks the desktop to put it
/// in front of the others by that ficha. Without one the request is as good as
/// the display system lets it be: on X11 it counts as made by the user now, on
/// Wayland the desktop may only mark the window. A window that was not there
/// before is placed by the desktop's own rules then.
///
/// Main thread only.
void traeAlFrente(QWindow &ventana, const Ficha &ficha);
