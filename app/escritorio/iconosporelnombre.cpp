#include "iconosporelnombre.h"

#include <QMutexLocker>

QIcon IconosPorElNombre::icon(const QFileInfo &info) const {
    return info.isFile() ? clase(info.suffix().toLower()).icono : QFileIconProvider::icon(info);
}

QString IconosPorElNombre::type(const QFileInfo &info) const {
    return info.isFile() ? clase(info.suffix().toLower()).nombre : QFileIconProvider::type(info);
}

IconosPorElNombre::Clase IconosPorElNombre::clase(const QString &terminacion) const {
    const QMutexLocker cerrado(&m_cerrojo);
    if (const auto vista = m_clases.constFind(terminacion); vista != m_clases.cend())
        return *vista;
    const QMimeType suya =
        m_tabla.mimeTypeForFile(QStringLiteral("x.") + terminacion, QMimeDatabase::MatchExtension);
    QIcon icono = QFileIconProvider::icon(QFileIconProvider::File);
    for (const QString &suyo : {suya.genericIconName(), suya.iconName()}) // the better one last
        if (QIcon::hasThemeIcon(suyo))
            icono = QIcon::fromTheme(suyo);
    const QString nombre = suya.isDefault() ? QStringLiteral("Archivo") : suya.comment();
    return *m_clases.insert(terminacion, {icono, nombre});
}
