#include "palabras.h"

#include "lugares/ruta.h"
#include "puertos/escritorio.h"

#include <cmath>

QString palabras::cuantoFalta(double s) {
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

QString palabras::enUnaLinea(QString texto) {
    return texto.remove(u'\n').remove(u'\r');
}

QString palabras::iconoDe(bool carpeta) {
    return carpeta ? QStringLiteral("folder") : QStringLiteral("doc");
}

QString palabras::claseDe(bool carpeta) {
    return carpeta ? QStringLiteral("carpeta") : QStringLiteral("archivo");
}

QString palabras::titular(const QList<QUrl> &origenes) {
    if (origenes.isEmpty())
        return {};
    if (origenes.size() == 1)
        return ruta::ultimoComponente(origenes.first());
    return QStringLiteral("%1 archivos").arg(origenes.size());
}

QString palabras::nombrePropuesto(const QList<QUrl> &origenes) {
    if (origenes.size() == 1)
        return ruta::ultimoComponente(origenes.first()) + QStringLiteral(".okz");
    return QStringLiteral("Archivo.okz");
}

QString palabras::tamanos(const estados::Hecho &hecho, const Escritorio &escritorio) {
    return escritorio.textoDeBytes(hecho.entrada) + QStringLiteral("  →  ") +
           escritorio.textoDeBytes(hecho.salida);
}

QString palabras::ahorro(const estados::Hecho &hecho, const Escritorio &escritorio) {
    if (hecho.entrada < 1)
        return {};
    const double quedan =
        static_cast<double>(hecho.salida) / static_cast<double>(hecho.entrada) * 100;
    return QStringLiteral("ahorras %1 · %2% menos")
        .arg(escritorio.textoDeBytes(hecho.entrada - hecho.salida))
        .arg(static_cast<qint64>(100 - quedan));
}

QString palabras::duracion(const estados::Hecho &hecho) {
    constexpr double kMinuto = 60;
    if (hecho.segundos < kMinuto)
        return QStringLiteral("en %1 s").arg(static_cast<qint64>(hecho.segundos));
    return QStringLiteral("en %1 min").arg(static_cast<qint64>(hecho.segundos / kMinuto));
}

QString palabras::anuncio(const estados::Hecho &hecho, const Escritorio &escritorio) {
    QStringList partes{
        QStringLiteral("Guardado: de %1 a %2")
            .arg(escritorio.textoDeBytes(hecho.entrada), escritorio.textoDeBytes(hecho.salida)),
        ahorro(hecho, escritorio), duracion(hecho)};
    partes.removeAll(QString());
    return partes.join(QStringLiteral(", "));
}

Final palabras::finalDeGuardar(const estados::Estado &estado, const Escritorio &escritorio) {
    if (const auto *error = std::get_if<estados::Error>(&estado))
        return {QStringLiteral("No se pudo guardar"), error->texto};
    const auto *hecho = std::get_if<estados::Hecho>(&estado);
    if (hecho == nullptr)
        return {};
    QStringList lineas{tamanos(*hecho, escritorio), ahorro(*hecho, escritorio)};
    lineas.removeAll(QString());
    return {QStringLiteral("Guardado en «%1»").arg(ruta::ultimoComponente(hecho->ruta)),
            lineas.join(u'\n')};
}

Final palabras::finalDeRecuperar(const estados::Estado &estado, const QUrl &archivo) {
    if (const auto *hecho = std::get_if<estados::Hecho>(&estado))
        return {QStringLiteral("Recuperado"),
                QStringLiteral("De %1 a «%2».")
                    .arg(ruta::ultimoComponente(archivo), ruta::ultimoComponente(hecho->ruta))};
    return {QStringLiteral("No se pudo recuperar"), std::get<estados::Error>(estado).texto};
}
