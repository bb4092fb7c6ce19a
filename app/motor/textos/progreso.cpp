#include "progreso.h"

#include "lineas.h"

#include <QRegularExpression>

#include <charconv>

namespace {

// Below these an estimate would jump about more than it tells.
constexpr double kMinimoPorCiento = 1.0;
constexpr double kMinimoSegundos = 2.0;

const QRegularExpression &formaDeLinea() {
    static const QRegularExpression forma(
        QStringLiteral(R"((\d+)/(\d+) ficheros \(([\d.]+)%\), (\d+) MiB)"));
    return forma;
}

double porCiento(const QString &cifra) {
    const QByteArray ascii = cifra.toLatin1();
    double leido = 0;
    const auto [fin, fallo] = std::from_chars(ascii.begin(), ascii.end(), leido);
    return fallo == std::errc{} && fin == ascii.end() ? leido : 0;
}

// The whole numbers of the matched text, without those too long for 64 bits:
// the first two that remain count as done and total.
QList<qint64> numeros(const QString &encontrado) {
    static const QRegularExpression racha(QStringLiteral(R"(\d+)"));
    QList<qint64> todos;
    auto rachas = racha.globalMatch(encontrado);
    while (rachas.hasNext()) {
        bool cabe = false;
        const qint64 numero = rachas.next().captured().toLongLong(&cabe);
        if (cabe)
            todos.append(numero);
    }
    return todos;
}

QString cuenta(qint64 hechos, qint64 total) {
    if (total == 1)
        return QStringLiteral("1 archivo");
    return QStringLiteral("%1 de %2 archivos").arg(hechos).arg(total);
}

std::optional<double> estimacion(double p, double transcurrido) {
    if (p < kMinimoPorCiento || transcurrido < kMinimoSegundos)
        return std::nullopt;
    return (100 - p) * transcurrido / p;
}

} // namespace

std::optional<estados::Trabajando> progreso::lee(QStringView linea, double transcurrido) {
    const auto encaje = formaDeLinea().match(linea.toString());
    if (encaje.hasMatch()) {
        const QList<qint64> cifras = numeros(encaje.captured());
        if (cifras.size() < 2)
            return std::nullopt;
        const double p = porCiento(encaje.captured(3));
        return estados::Trabajando{p / 100, cuenta(cifras[0], cifras[1]),
                                   estimacion(p, transcurrido)};
    }
    if (linea.contains(u"deriving key"))
        return estados::Trabajando{0, QStringLiteral("preparando el cifrado…"), std::nullopt};
    return std::nullopt;
}

QList<estados::Trabajando> progreso::leeTrozo(const QByteArray &trozo, double transcurrido) {
    QList<estados::Trabajando> leidos;
    const QString texto = lineas::texto(trozo);
    for (const QStringView linea : lineas::separa(texto)) {
        if (auto estado = lee(linea, transcurrido))
            leidos.append(*std::move(estado));
    }
    return leidos;
}
