#include "revelar.h"

#include "lugares/ruta.h"
#include "puertos/escritorio.h"

#include <unistd.h>

namespace {

QString dondeEsta(const QUrl &url) {
    const QByteArray ruta = ruta::nativa(url);
    const QString frase = ::access(ruta.constData(), F_OK) == 0
                              ? QStringLiteral("Está en «%1».")
                              : QStringLiteral("Ya no está en «%1».");
    return frase.arg(QString::fromUtf8(ruta));
}

} // namespace

void revelaOAvisa(Escritorio &escritorio, const QUrl &url) {
    escritorio.revela(url, [&escritorio, url] {
        escritorio.avisa(Aviso::Siempre, QStringLiteral("No se pudo mostrar"), dondeEsta(url));
    });
}

void abreOMuestra(Escritorio &escritorio, const QUrl &url, const std::function<void()> &siNo) {
    escritorio.abre(url, [&escritorio, url, siNo] { escritorio.revela(url, siNo); });
}
