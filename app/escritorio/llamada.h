#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

/// A call on the session bus that nobody waits for: `hacer` gets the reply or
/// the error in time, without a session bus during the call. Dropped when
/// `receptor` goes first. `plazo` in milliseconds, -1 for the bus's own.
template<typename Hacer>
void llamaSinEsperar(QObject *receptor, const QDBusMessage &llamada, Hacer hacer, int plazo = -1) {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        hacer(QDBusMessage::createError(QDBusError::Disconnected, {}));
        return;
    }
    auto *espera = new QDBusPendingCallWatcher(bus.asyncCall(llamada, plazo), receptor);
    QObject::connect(espera, &QDBusPendingCallWatcher::finished, receptor,
                     [espera, hacer = std::move(hacer)] {
                         hacer(espera->reply());
                         espera->deleteLater();
                     });
}
