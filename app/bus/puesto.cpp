#include "puesto.h"

#include "adaptadores.h"
#include "inicio/recepcion.h"
#include "nombres.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace {

QString nombre() {
    return QLatin1String(bus::kNombre);
}

} // namespace

void Puesto::registra(Recepcion &recepcion) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    new AdaptadorServicios(recepcion);
    new AdaptadorAplicacion(recepcion);
    // The object first: with the name come the calls that waited for it.
    bus.registerObject(QLatin1String(bus::kRuta), &recepcion, QDBusConnection::ExportAdaptors);
    bus.interface()->registerService(nombre(), QDBusConnectionInterface::DontQueueService,
                                     QDBusConnectionInterface::DontAllowReplacement);
}

void Puesto::refresca() {
    QDBusConnection::sessionBus().asyncCall(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReloadConfig")));
}

bool Puesto::esNuestro() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() &&
           bus.interface()->serviceOwner(nombre()).value() == bus.baseService();
}

void Puesto::deja() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        bus.unregisterService(nombre());
}
