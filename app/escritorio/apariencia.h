#pragma once

#include "paleta.h"

#include <QObject>

class QDBusVariant;

/// Keeps the application's palette dark or light, and with the accent, as the
/// desktop's settings portal says, from the start and whenever that changes.
/// Without a portal, or as long as it does not answer, the palette stays what
/// the platform gives; nothing waits for it. Main thread only.
class Apariencia : public QObject {
    Q_OBJECT

public:
    Apariencia();

private slots:
    void cambia(const QString &espacio, const QString &clave, const QDBusVariant &valor);

private:
    void pregunta(const QString &clave, const QString &metodo);
    void toma(const QString &clave, QVariant valor);

    Esquema m_esquema = Esquema::SinPreferencia;
    std::optional<QColor> m_acento;
};
