#include "bytes.h"

#include <array>
#include <cmath>

namespace {

struct Unidad {
    const char *nombre;
    int decimales;
};

constexpr std::array<Unidad, 7> kUnidades{
    {{"bytes", 0}, {"kB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

} // namespace

QString textoDeBytes(qint64 bytes, const QLocale &local) {
    if (bytes == 1 || bytes == -1)
        return local.toString(bytes) + QStringLiteral(" byte");
    auto valor = static_cast<double>(bytes);
    size_t unidad = 0;
    // Rounded first: 999 999 bytes are 1.0 MB, not 1000 kB.
    const auto redondo = [&] {
        const double escala = std::pow(10, kUnidades[unidad].decimales);
        return std::round(std::abs(valor) * escala) / escala;
    };
    while (redondo() >= 1000 && unidad + 1 < kUnidades.size()) {
        valor /= 1000;
        ++unidad;
    }
    return local.toString(valor, 'f', kUnidades[unidad].decimales) + QLatin1Char(' ') +
           QLatin1StringView(kUnidades[unidad].nombre);
}
