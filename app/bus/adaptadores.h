#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

class Recepcion;

/// es.orcalin.Servicios: each method takes file URIs, and answers with an error
/// (bus::kRechazo) whose message is the service's error text.
class AdaptadorServicios : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "es.orcalin.Servicios")

public:
    /// Becomes a child of it.
    explicit AdaptadorServicios(Recepcion &recepcion);

public slots:
    void comprimir(const QStringList &uris, const QDBusMessage &mensaje);
    void abrir(const QStringList &uris, const QDBusMessage &mensaje);

private:
    Recepcion &m_recepcion;
};

/// org.freedesktop.Application, with the one action "salir". The names are the
/// interface's own.
class AdaptadorAplicacion : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Becomes a child of it.
    explicit AdaptadorAplicacion(Recepcion &recepcion);

public slots:
    void Activate(const QVariantMap &platform_data);
    void Open(const QStringList &uris, const QVariantMap &platform_data);
    void ActivateAction(const QString &action_name, const QVariantList &parameter,
                        const QVariantMap &platform_data, const QDBusMessage &mensaje);

private:
    Recepcion &m_recepcion;
};
