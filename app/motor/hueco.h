#pragma once

#include "espacio.h"

#include <QString>

/// Whether what is taken out of an archive into the temporary folder has room
/// there. Any thread.
namespace hueco {

/// What is kept free beside it, in bytes.
constexpr qint64 kMargen = 100LL << 20U; // 100 MiB

/// None when `bytes` (0 or more) and the margin fit, or when `libre` cannot
/// tell; otherwise the message for the user, who reads the two sizes without
/// the margin. `paraQue` is its beginning: "Para abrirlo".
std::optional<QString> falta(const QString &paraQue, qint64 bytes, const EspacioLibre &libre);

} // namespace hueco
