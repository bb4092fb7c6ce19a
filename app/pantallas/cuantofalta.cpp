#include "cuantofalta.h"

#include <cmath>

QString cuantoFalta(double s) {
    constexpr double kMinuto = 60;
    constexpr double kHora = 3600;
    const auto cifra = [](double valor) { return QString::number(std::round(valor), 'f', 0); };
    if (s < 10)
        return QStringLiteral("unos segundos");
    if (s < kMinuto)
        return cifra(std::round(s / 5) * 5) + QStringLiteral(" s");
    if (s < kHora)
        return cifra(s / kMinuto) + QStringLiteral(" min");
    if (s / kHora < 2)
        return QStringLiteral("más de 1 hora");
    return QStringLiteral("unas %1 horas").arg(cifra(s / kHora));
}
