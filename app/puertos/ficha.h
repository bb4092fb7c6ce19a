#pragma once

#include <QByteArray>

/// What whoever starts a program, or asks a running one for something, passes
/// along so that its window may come to the front: proof that the user has just
/// asked for it. Each display system has its own; either may be empty.
struct Ficha {
    QByteArray x11;     ///< startup notification id
    QByteArray wayland; ///< xdg-activation token

    [[nodiscard]] bool vacia() const { return x11.isEmpty() && wayland.isEmpty(); }

    /// The one that this process was started with.
    static Ficha delEntorno();

    /// A ficha is good for one window: what this process starts must not find
    /// it again. Before there are other threads.
    static void quitaDelEntorno();
};
