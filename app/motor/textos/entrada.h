#pragma once

#include "caracter.h"

#include <QString>
#include <QUuid>

/// One entry of an archive. A value, as small as it can be: there may be a
/// million. Any thread.
struct Entrada {
    QUuid id;         ///< made when the entry was read: no two readings share one
    QString ruta;     ///< path inside the archive, as the engine printed it; not empty
    qint64 bytes = 0; ///< size as printed, 0 when that was no number
    Caracter tipo;    ///< '-' file, 'd' folder, 'l' symbolic link, 'h' hard link, or others

    /// The last component of `ruta`, or all of it when it is nothing but slashes.
    [[nodiscard]] QString nombre() const;

    /// The components before the last one, joined with "/"; empty when there
    /// are none. Leading and doubled slashes are not reproduced.
    [[nodiscard]] QString carpeta() const;
};

/// Equal in every field, `ruta` by canonical equivalence: "ñ" is "ñ" however
/// the archive stores it. As `id` is part of it, never equal to an entry of
/// another reading.
bool operator==(const Entrada &a, const Entrada &b);
size_t qHash(const Entrada &entrada, size_t semilla = 0);

Q_DECLARE_TYPEINFO(Entrada, Q_RELOCATABLE_TYPE);
