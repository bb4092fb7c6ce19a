#include "espacio.h"

#include "ruta.h"

#include <array>
#include <cmath>
#include <filesystem>

namespace {

constexpr qint64 kMargen = 100LL << 20U; // 100 MiB

qint64 conMargen(qint64 bytes) {
    qint64 suma = 0;
    if (__builtin_add_overflow(bytes, kMargen, &suma))
        qFatal("el tamaño de una entrada no cabe en 64 bits");
    return suma;
}

struct Unidad {
    const char *nombre;
    int decimales;
};

constexpr std::array<Unidad, 7> kUnidades{
    {{"bytes", 0}, {"kB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

} // namespace

std::optional<qint64> espacioLibre(const QByteArray &carpeta) {
    // Asked of the folder itself: the list of mounted volumes, by which Qt
    // finds it, knows nothing of a container's root.
    std::error_code fallo;
    const auto espacio = std::filesystem::space(carpeta.toStdString(), fallo);
    if (fallo || espacio.available > static_cast<uintmax_t>(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    return static_cast<qint64>(espacio.available);
}

std::optional<QString> faltaEspacio(const QString &paraQue, qint64 bytes,
                                    const EspacioLibre &libre) {
    const auto libres = libre(ruta::temporal());
    if (!libres || *libres >= conMargen(bytes))
        return std::nullopt;
    return QStringLiteral("%1 hay que sacarlo del archivo y no cabe: ocupa %2 y quedan %3.")
        .arg(paraQue, textoDeBytes(bytes), textoDeBytes(*libres));
}

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
