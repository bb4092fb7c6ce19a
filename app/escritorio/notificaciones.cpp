#include "notificaciones.h"

#include "llamada.h"
#include "puertos/identidad.h"

#include <QGuiApplication>

namespace {

const QString kServicio = QStringLiteral("org.freedesktop.Notifications");
const QString kObjeto = QStringLiteral("/org/freedesktop/Notifications");
const QString kNuestro = QLatin1String(kIdentidad);
const QString kVer = QStringLiteral("default");

QDBusMessage orden(const char *nombre, const QVariantList &argumentos = {}) {
    auto llamada =
        QDBusMessage::createMethodCall(kServicio, kObjeto, kServicio, QLatin1String(nombre));
    llamada.setArguments(argumentos);
    return llamada;
}

} // namespace

// Only once there is something to hear of: most runs never notify.
void Notificaciones::escucha() {
    if (std::exchange(m_escucha, true))
        return;
    auto bus = QDBusConnection::sessionBus();
    bus.connect(kServicio, kObjeto, kServicio, QStringLiteral("ActionInvoked"), this,
                SLOT(contestada(uint, QString)));
    bus.connect(kServicio, kObjeto, kServicio, QStringLiteral("ActivationToken"), this,
                SLOT(autorizada(uint, QString)));
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState estado) {
                if (estado == Qt::ApplicationActive)
                    retira();
            });
}

// Some daemons take the text for markup, and names may hold anything.
void Notificaciones::muestra(const QString &titulo, const QString &texto) {
    escucha();
    llamaSinEsperar(
        this, orden("GetCapabilities"), [this, titulo, texto](const QDBusMessage &respuesta) {
            const QStringList sabe = respuesta.arguments().value(0).toStringList();
            notifica(titulo,
                     sabe.contains(QStringLiteral("body-markup")) ? texto.toHtmlEscaped() : texto);
        });
}

void Notificaciones::notifica(const QString &titulo, const QString &texto) {
    const QVariantMap indicios{{QStringLiteral("desktop-entry"), kNuestro}};
    const QStringList acciones{kVer, QStringLiteral("Ver")};
    constexpr int kComoSiempre = -1; // the daemon knows for how long
    llamaSinEsperar(this,
                    orden("Notify", {QStringLiteral("Orcalin"), m_id, kNuestro, titulo, texto,
                                     acciones, indicios, kComoSiempre}),
                    [this](const QDBusMessage &respuesta) {
                        m_id = respuesta.arguments().value(0).toUInt();
                        m_ficha = {};
                    });
}

void Notificaciones::retira() {
    if (const uint id = std::exchange(m_id, 0); id != 0)
        llamaSinEsperar(this, orden("CloseNotification", {id}), [](const QDBusMessage &) {});
}

// Comes before the answer that it is for, in the terms of the display system
// at hand; the other looks at its own only.
void Notificaciones::autorizada(uint id, const QString &ficha) {
    if (id == m_id)
        m_ficha = {ficha.toUtf8(), ficha.toUtf8()};
}

void Notificaciones::contestada(uint id, const QString &accion) {
    if (id == m_id && accion == kVer)
        alVolver(m_ficha);
}
