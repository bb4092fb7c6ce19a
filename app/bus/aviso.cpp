#include "aviso.h"

#include "nombres.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace {

constexpr int kEspera = 3000; // milliseconds; the desktop may have to start its daemon

} // namespace

void bus::avisa(const QString &texto) {
    auto mensaje = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                                  QStringLiteral("/org/freedesktop/Notifications"),
                                                  QStringLiteral("org.freedesktop.Notifications"),
                                                  QStringLiteral("Notify"));
    const QString nombre = QLatin1String(kNombre); // the icon's and the desktop file's as well
    mensaje << QStringLiteral("Orcalin") << 0U << nombre << QStringLiteral("Orcalin") << texto
            << QStringList() << QVariantMap{{QStringLiteral("desktop-entry"), nombre}} << -1;
    QDBusConnection::sessionBus().call(mensaje, QDBus::Block, kEspera);
}
