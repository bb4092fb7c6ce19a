#include "adaptadores.h"

#include "inicio/recepcion.h"
#include "nombres.h"

#include <QDBusConnection>
#include <QDBusError>

namespace {

Ficha fichaDe(const QVariantMap &datos) {
    return {datos.value(QLatin1String(bus::kFichaX11)).toString().toUtf8(),
            datos.value(QLatin1String(bus::kFichaWayland)).toString().toUtf8()};
}

void contesta(const QDBusMessage &mensaje, const std::optional<QString> &rechazo) {
    if (!rechazo)
        return; // what comes by itself is the answer
    mensaje.setDelayedReply(true);
    QDBusConnection::sessionBus().send(
        mensaje.createErrorReply(QLatin1String(bus::kRechazo), *rechazo));
}

} // namespace

AdaptadorServicios::AdaptadorServicios(Recepcion &recepcion)
    : QDBusAbstractAdaptor(&recepcion)
    , m_recepcion(recepcion) {}

void AdaptadorServicios::comprimir(const QStringList &uris, const QDBusMessage &mensaje) {
    contesta(mensaje, m_recepcion.atiende({Peticion::Que::Comprimir, uris}));
}

void AdaptadorServicios::abrir(const QStringList &uris, const QDBusMessage &mensaje) {
    contesta(mensaje, m_recepcion.atiende({Peticion::Que::Abrir, uris}));
}

AdaptadorAplicacion::AdaptadorAplicacion(Recepcion &recepcion)
    : QDBusAbstractAdaptor(&recepcion)
    , m_recepcion(recepcion) {}

void AdaptadorAplicacion::Activate(const QVariantMap &platform_data) {
    m_recepcion.atiende({Peticion::Que::Activar, {}, fichaDe(platform_data)});
}

void AdaptadorAplicacion::Open(const QStringList &uris, const QVariantMap &platform_data) {
    m_recepcion.atiende({Peticion::Que::Ficheros, uris, fichaDe(platform_data)});
}

void AdaptadorAplicacion::ActivateAction(const QString &action_name, const QVariantList &,
                                         const QVariantMap &platform_data,
                                         const QDBusMessage &mensaje) {
    if (action_name == QLatin1String(bus::kAccionSalir)) {
        m_recepcion.atiende({Peticion::Que::Salir, {}, fichaDe(platform_data)});
        return;
    }
    mensaje.setDelayedReply(true);
    QDBusConnection::sessionBus().send(mensaje.createErrorReply(
        QDBusError::InvalidArgs, QStringLiteral("No hay ninguna acción «%1».").arg(action_name)));
}
