#pragma once

#include "puertos/ficha.h"

#include <QObject>

#include <functional>

/// Notifications by the desktop's daemon: one at a time, the newer takes the
/// place of the older. Without a session bus or a daemon nothing happens.
/// Nothing waits for the daemon. Main thread only.
class Notificaciones : public QObject {
    Q_OBJECT

public:
    /// What to do when the user answers one, with what came along for it.
    std::function<void(const Ficha &ficha)> alVolver = [](const Ficha &) {};

    /// Shows one; plain text. It goes when the application comes to the front.
    void muestra(const QString &titulo, const QString &texto);

private slots:
    void contestada(uint id, const QString &accion);
    void autorizada(uint id, const QString &ficha);

private:
    void escucha();
    void notifica(const QString &titulo, const QString &texto);
    void retira();

    bool m_escucha = false;
    uint m_id = 0; // of the one that was shown last, 0 for none
    Ficha m_ficha;
};
