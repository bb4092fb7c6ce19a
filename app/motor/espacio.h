#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

/// Free bytes for this user on the volume that holds a folder, or none when
/// they cannot be known. Any thread.
std::optional<qint64> espacioLibre(const QByteArray &carpeta);

/// Whoever answers that question.
using EspacioLibre = std::function<std::optional<qint64>(const QByteArray &carpeta)>;
