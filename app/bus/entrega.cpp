#include "entrega.h"

#include "nombres.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

namespace {

using bus::Entrega;

QVariantMap datosDe(const Ficha &ficha) {
    QVariantMap datos;
    if (!ficha.x11.isEmpty())
        datos.insert(QLatin1String(bus::kFichaX11), QString::fromUtf8(ficha.x11));
    if (!ficha.wayland.isEmpty())
        datos.insert(QLatin1String(bus::kFichaWayland), QString::fromUtf8(ficha.wayland));
    return datos;
}

QDBusMessage llamada(const char *interfaz, const QString &metodo, const QVariantList &argumentos) {
    auto mensaje = QDBusMessage::createMethodCall(
        QLatin1String(bus::kNombre), QLatin1String(bus::kRuta), QLatin1String(interfaz), metodo);
    mensaje.setArguments(argumentos);
    return mensaje;
}

QDBusMessage mensajeDe(const Peticion &peticion) {
    const QVariantMap datos = datosDe(peticion.ficha);
    switch (peticion.que) {
    case Peticion::Que::Comprimir:
        return llamada(bus::kServicios, QStringLiteral("comprimir"), {peticion.uris});
    case Peticion::Que::Abrir:
        return llamada(bus::kServicios, QStringLiteral("abrir"), {peticion.uris});
    case Peticion::Que::Ficheros:
        return llamada(bus::kAplicacion, QStringLiteral("Open"), {peticion.uris, datos});
    case Peticion::Que::Salir:
        return llamada(bus::kAplicacion, QStringLiteral("ActivateAction"),
                       {QLatin1String(bus::kAccionSalir), QVariantList(), datos});
    case Peticion::Que::Activar:
        break;
    }
    return llamada(bus::kAplicacion, QStringLiteral("Activate"), {datos});
}

// A connection of its own: the one of the process is for one that has its
// application object already.
class Conexion {
public:
    Conexion() = default;
    ~Conexion() { QDBusConnection::disconnectFromBus(m_bus.name()); }
    Conexion(const Conexion &) = delete;
    Conexion &operator=(const Conexion &) = delete;
    const QDBusConnection *operator->() const { return &m_bus; }

private:
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("entrega"));
};

// One that leaves while it is asked answers nothing either, but is gone then.
Entrega sinRespuesta(const Conexion &conexion) {
    const bool hay =
        conexion->isConnected() &&
        conexion->interface()->isServiceRegistered(QLatin1String(bus::kNombre)).value();
    return {hay ? Entrega::Fin::NoContesta : Entrega::Fin::Nadie};
}

// The services have no place for the ficha.
bool llevaFichaAparte(const Peticion &peticion) {
    return !peticion.ficha.vacia() &&
           (peticion.que == Peticion::Que::Comprimir || peticion.que == Peticion::Que::Abrir);
}

} // namespace

Entrega bus::entrega(const Peticion &peticion, Arranque arranque, std::chrono::milliseconds plazo) {
    const Conexion conexion;
    QDBusMessage mensaje = mensajeDe(peticion);
    mensaje.setAutoStartService(arranque == Arranque::Si);
    const int espera = static_cast<int>(plazo.count());
    const QDBusMessage respuesta = conexion->call(mensaje, QDBus::Block, espera);
    if (respuesta.errorName() == QLatin1String(kRechazo))
        return {Entrega::Fin::Rechazada, respuesta.errorMessage()};
    if (respuesta.type() != QDBusMessage::ReplyMessage)
        return sinRespuesta(conexion);
    if (llevaFichaAparte(peticion))
        conexion->call(mensajeDe({Peticion::Que::Activar, {}, peticion.ficha}), QDBus::Block,
                       espera);
    return {Entrega::Fin::Hecha};
}
