#include "frente.h"

#include "frentex11.h"
#include "puertos/ficha.h"

#include <QGuiApplication>
#include <QWindow>

namespace {

// Qt has no parameter for the token: it takes it from where a start leaves it.
void traeEnWayland(QWindow &ventana, const Ficha &ficha) {
    if (!ficha.wayland.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", ficha.wayland);
    ventana.requestActivate();
    Ficha::quitaDelEntorno();
}

} // namespace

void traeAlFrente(QWindow &ventana, const Ficha &ficha) {
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const bool estaba = ventana.isVisible();
    ventana.create();
    if (x11 != nullptr && !ficha.x11.isEmpty())
        x11::ponFicha(x11->connection(), ventana.winId(), ficha.x11);
    ventana.setWindowStates(ventana.windowStates() & ~Qt::WindowMinimized);
    ventana.setVisible(true);
    ventana.raise();
    if (!estaba && ficha.vacia())
        return;
    if (x11 != nullptr)
        x11::activa(x11->connection(), ventana.winId(), ficha.x11);
    else
        traeEnWayland(ventana, ficha);
}
