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
    const QIcon general = QIcon::fromTheme(suya.genericIconName(), QFileIconProvider::icon(File));
    const QIcon icono = QIcon::fromTheme(suya.iconName(), general);
    const QString nombre = suya.isDefault() ? QStringLiteral("Archivo") : suya.comment();
    return *m_clases.insert(terminacion, {icono, nombre});
}
