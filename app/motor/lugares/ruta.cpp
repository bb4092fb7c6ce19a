#include "ruta.h"

#include <QDir>
#include <QFile>
#include <QUuid>

namespace {

QByteArray nombre(const QUrl &url) {
    const QByteArray todo = ruta::nativa(url);
    return todo == "/" ? todo : todo.mid(todo.lastIndexOf('/') + 1);
}

} // namespace

QByteArray ruta::nativa(const QUrl &url) {
    if (!url.isLocalFile())
        return {};
    QByteArray camino = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    while (camino.size() > 1 && camino.endsWith('/'))
        camino.chop(1);
    return camino;
}

QUrl ruta::url(const QByteArray &nativa) {
    return QUrl::fromEncoded("file://" + nativa.toPercentEncoding("/"), QUrl::StrictMode);
}

QUrl ruta::url(const QString &ruta) {
    return url(QFile::encodeName(ruta));
}

std::optional<QUrl> ruta::deUri(const QString &uri) {
    const QUrl url = QUrl::fromEncoded(uri.toUtf8());
    const QByteArray camino = nativa(url);
    if (!camino.startsWith('/') || camino.contains('\0'))
        return std::nullopt;
    return url;
}

QString ruta::ultimoComponente(const QUrl &url) {
    QString visible = QString::fromUtf8(nombre(url));
    for (QChar &c : visible) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = QChar::ReplacementCharacter;
    }
    return visible;
}

bool ruta::esArchivo(const QUrl &url) {
    const QString ultimo = ultimoComponente(url);
    const auto punto = ultimo.lastIndexOf(u'.');
    return punto > 0 && ultimo.mid(punto + 1).toLower() == u"okz";
}

QByteArray ruta::temporal() {
    const QByteArray carpeta = QFile::encodeName(QDir::tempPath());
    // Qt gives the canonical path, which is empty for a folder that is missing.
    return carpeta.isEmpty() ? qgetenv("TMPDIR") : carpeta;
}

QByteArray ruta::nombreUnico() {
    return QUuid::createUuid().toByteArray(QUuid::WithoutBraces).toUpper();
}

bool ruta::esNombreUnico(const QByteArray &nombre) {
    return nombre.size() == nombreUnico().size() && !QUuid::fromString(nombre).isNull();
}
