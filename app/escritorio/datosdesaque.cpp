#include "datosdesaque.h"

#include "trabajos/saque.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QUrl>

namespace {

const QString kTipo = QStringLiteral("text/uri-list");

// Encoded by hand: a name that is not valid UTF-8 must come through.
QByteArray lista(const Saque &saque) {
    QByteArray uris;
    for (const QUrl &url : saque.urls())
        uris += url.toEncoded() + "\r\n";
    return uris;
}

bool seRetieneLaSuelta() {
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

} // namespace

DatosDeSaque::DatosDeSaque(Saque &saque)
    : m_saque(&saque) {
    connect(&saque, &Saque::acabado, this, [this] { m_lista = lista(*m_saque); });
    if (saque.fase() != Saque::Fase::Sacando)
        m_lista = lista(saque);
}

QStringList DatosDeSaque::formats() const {
    return {kTipo};
}

bool DatosDeSaque::hasFormat(const QString &tipo) const {
    return tipo == kTipo;
}

QVariant DatosDeSaque::retrieveData(const QString &tipo, QMetaType) const {
    if (tipo != kTipo)
        return {};
    const bool falta = m_saque && m_saque->fase() == Saque::Fase::Sacando;
    if (falta && seRetieneLaSuelta())
        return lista(*m_saque);
    if (falta)
        espera();
    return m_lista;
}

void DatosDeSaque::espera() const {
    QEventLoop bucle;
    connect(m_saque, &Saque::acabado, &bucle, &QEventLoop::quit);
    connect(m_saque, &QObject::destroyed, &bucle, &QEventLoop::quit);
    bucle.exec();
}
