#include "lineas.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

bool esFinDeLinea(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'\n' && u <= u'\r') || u == u'\x85' || u == u'\x2028' || u == u'\x2029';
}

} // namespace

QString lineas::texto(QByteArrayView utf8) {
    QStringDecoder lector(QStringConverter::Utf8, QStringConverter::Flag::Stateless |
                                                      QStringConverter::Flag::ConvertInitialBom);
    QString leido = lector(utf8);
    return lector.hasError() ? QString() : leido;
}

QList<QStringView> lineas::separa(QStringView texto) {
    QList<QStringView> todas;
    qsizetype inicio = 0;
    for (qsizetype i = 0; i <= texto.size(); ++i) {
        if (i < texto.size() && !esFinDeLinea(texto[i]))
            continue;
        if (i > inicio)
            todas.append(texto.sliced(inicio, i - inicio));
        inicio = i + 1;
    }
    return todas;
}

QString lineas::sinPrefijo(QStringView linea) {
    return linea.toString().remove(QStringLiteral("Error: "));
}

QString lineas::primerError(QStringView texto, const QString &siNo) {
    const qsizetype donde = texto.indexOf(u"Error");
    if (donde < 0)
        return siNo;
    const auto *inicio = texto.begin() + donde;
    while (inicio != texto.begin() && !esFinDeLinea(inicio[-1]))
        --inicio;
    return sinPrefijo({inicio, std::find_if(inicio, texto.end(), esFinDeLinea)});
}
