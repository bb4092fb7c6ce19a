#include "espacio.h"

#include <QFile>
#include <QStorageInfo>

std::optional<qint64> espacioLibre(const QByteArray &carpeta) {
    const QStorageInfo volumen(QFile::decodeName(carpeta));
    if (!volumen.isValid() || volumen.bytesAvailable() < 0)
        return std::nullopt;
    return volumen.bytesAvailable();
}
