#pragma once

#include <QByteArray>

#include <cstdint>

struct xcb_connection_t;

/// The part of bringing a window to the front that Qt keeps to itself on X11.
/// `ventana` is the window's number. Main thread only.
namespace x11 {

/// Tells the window manager which start the window belongs to; to be done
/// before it is mapped, so that it is placed by the time the user asked at.
void ponFicha(xcb_connection_t *conexion, uint32_t ventana, const QByteArray &ficha);

/// Asks the window manager to activate the window as of the time in the ficha,
/// or as of now without one, and declares the start as finished.
void activa(xcb_connection_t *conexion, uint32_t ventana, const QByteArray &ficha);

} // namespace x11
