#include "apariencia.h"

#include "llamada.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusVariant>

namespace {

const QString kServicio = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kObjeto = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterfaz = QStringLiteral("org.freedesktop.portal.Settings");
const QString kEspacio = QStringLiteral("org.freedesktop.appearance");
const QString kEsquema = QStringLiteral("color-scheme");
const QString kAcento = QStringLiteral("accent-color");
const QString kLeeUno = QStringLiteral("ReadOne");
const QString kLee = QStringLiteral("Read");

Esquema esquemaDe(const QVariant &valor) {
    switch (valor.toUInt()) {
    case 1:
        return Esquema::Oscuro;
    case 2:
        return Esquema::Claro;
    default:
        return Esquema::SinPreferencia;
    }
}

// Red, green and blue from 0 to 1; anything else says that there is none.
std::optional<QColor> acentoDe(const QVariant &valor) {
    if (!valor.canConvert<QDBusArgument>())
        return std::nullopt;
    const auto dato = valor.value<QDBusArgument>();
    if (dato.currentSignature() != QStringLiteral("(ddd)"))
        return std::nullopt;
    double rojo = 0;
    double verde = 0;
    double azul = 0;
    dato.beginStructure();
    dato >> rojo >> verde >> azul;
    dato.endStructure();
    for (const double parte : {rojo, verde, azul})
        if (!(parte >= 0 && parte <= 1))
            return std::nullopt;
    return QColor::fromRgbF(float(rojo), float(verde), float(azul));
}

} // namespace

Apariencia::Apariencia() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(kServicio, kObjeto, kInterfaz, QStringLiteral("SettingChanged"), this,
                SLOT(cambia(QString, QString, QDBusVariant)));
    pregunta(kEsquema, kLeeUno);
    pregunta(kAcento, kLeeUno);
}

// Portals before version 2 know the older method only.
void Apariencia::pregunta(const QString &clave, const QString &metodo) {
    auto llamada = QDBusMessage::createMethodCall(kServicio, kObjeto, kInterfaz, metodo);
    llamada << kEspacio << clave;
    llamaSinEsperar(this, llamada, [this, clave, metodo](const QDBusMessage &respuesta) {
        if (respuesta.type() == QDBusMessage::ReplyMessage)
            toma(clave, respuesta.arguments().value(0));
        else if (metodo == kLeeUno)
            pregunta(clave, kLee);
    });
}

void Apariencia::cambia(const QString &espacio, const QString &clave, const QDBusVariant &valor) {
    if (espacio == kEspacio)
        toma(clave, valor.variant());
}

void Apariencia::toma(const QString &clave, QVariant valor) {
    while (valor.canConvert<QDBusVariant>()) // the older method wraps it twice
        valor = valor.value<QDBusVariant>().variant();
    if (clave == kEsquema)
        m_esquema = esquemaDe(valor);
    else if (clave == kAcento)
        m_acento = acentoDe(valor);
    else
        return;
    QApplication::setPalette(QPalette()); // the platform's, as it is by now
    const QPalette suya = QGuiApplication::palette();
    if (const QPalette nueva = paletaPara(suya, m_esquema, m_acento); nueva != suya)
        QApplication::setPalette(nueva);
}
