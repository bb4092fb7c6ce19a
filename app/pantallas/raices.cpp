#include "raices.h"

#include <QSet>

#include <algorithm>

namespace {

constexpr qint64 kTope = 1LL << 61U; // sums stay below, whatever sizes a listing claims

QStringView sinBarra(QStringView ruta) {
    while (ruta.size() > 1 && ruta.endsWith(u'/'))
        ruta.chop(1);
    return ruta;
}

bool cuelga(QStringView ruta, const QSet<QStringView> &carpetas) {
    for (auto corte = ruta.lastIndexOf(u'/'); corte > 0; corte = ruta.lastIndexOf(u'/')) {
        ruta.truncate(corte);
        if (carpetas.contains(ruta))
            return true;
    }
    return false;
}

// The folders and everything below them: none for a choice without folders, so
// that such a one does not cost a walk over the whole listing.
qint64 bytesBajo(const Contenido &contenido, const QSet<QStringView> &carpetas) {
    qint64 bytes = 0;
    if (carpetas.isEmpty())
        return bytes;
    for (size_t i = 0; i < contenido.entradas.cuantas(); ++i)
        if (const Entrada entrada = contenido.entradas[i]; cuelga(sinBarra(entrada.ruta), carpetas))
            bytes = std::min(kTope, bytes + std::clamp<qint64>(entrada.bytes, 0, kTope));
    return bytes;
}

} // namespace

Raices raicesDe(const Contenido &contenido, const std::vector<uint32_t> &elegidas) {
    QList<Entrada> suyas; // what the sets below look at
    suyas.reserve(static_cast<qsizetype>(elegidas.size()));
    QSet<QStringView> carpetas;
    for (const uint32_t indice : elegidas)
        if (suyas.append(contenido.entradas[indice]); suyas.last().tipo == 'd')
            carpetas.insert(sinBarra(suyas.last().ruta));
    Raices raices{{}, bytesBajo(contenido, carpetas)};
    QSet<QStringView> vistas;
    for (const Entrada &entrada : std::as_const(suyas)) {
        const QStringView ruta = sinBarra(entrada.ruta);
        if (vistas.contains(ruta) || cuelga(ruta, carpetas))
            continue;
        vistas.insert(ruta);
        raices.rutas.append(entrada.ruta);
        raices.bytes = std::min(kTope, raices.bytes + std::clamp<qint64>(entrada.bytes, 0, kTope));
    }
    return raices;
}
