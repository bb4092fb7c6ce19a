#include "hueco.h"

#include "bytes.h"
#include "ruta.h"

namespace {

qint64 conMargen(qint64 bytes) {
    qint64 suma = 0;
    if (__builtin_add_overflow(bytes, hueco::kMargen, &suma))
        qFatal("el tamaño de una entrada no cabe en 64 bits");
    return suma;
}

} // namespace

std::optional<QString> hueco::falta(const QString &paraQue, qint64 bytes,
                                    const EspacioLibre &libre) {
    const auto libres = libre(ruta::temporal());
    if (!libres || *libres >= conMargen(bytes))
        return std::nullopt;
    return QStringLiteral("%1 hay que sacarlo del archivo y no cabe: ocupa %2 y quedan %3.")
        .arg(paraQue, textoDeBytes(bytes), textoDeBytes(*libres));
}
