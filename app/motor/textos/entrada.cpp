#include "entrada.h"

#include <QList>

namespace {

QList<QStringView> componentes(const QString &ruta) {
    return QStringView(ruta).split(u'/', Qt::SkipEmptyParts);
}

QString canonica(const QString &ruta) {
    return ruta.normalized(QString::NormalizationForm_C);
}

} // namespace

QString Entrada::nombre() const {
    const auto partes = componentes(ruta);
    return partes.isEmpty() ? ruta : partes.last().toString();
}

QString Entrada::carpeta() const {
    const auto partes = componentes(ruta);
    QString junta;
    for (qsizetype i = 0; i + 1 < partes.size(); ++i) {
        if (i > 0)
            junta += u'/';
        junta += partes[i];
    }
    return junta;
}

bool operator==(const Entrada &a, const Entrada &b) {
    return a.id == b.id && (a.ruta == b.ruta || canonica(a.ruta) == canonica(b.ruta)) &&
           a.bytes == b.bytes && a.tipo == b.tipo;
}

size_t qHash(const Entrada &entrada, size_t semilla) {
    return qHashMulti(semilla, entrada.id, canonica(entrada.ruta), entrada.bytes, entrada.tipo);
}
