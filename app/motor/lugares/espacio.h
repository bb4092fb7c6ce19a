#pragma once

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <functional>
#include <optional>

/// Free bytes for this user on the volume that holds a folder, or none when
/// they cannot be known. Any thread.
std::optional<qint64> espacioLibre(const QByteArray &carpeta);

/// Whoever answers that question.
using EspacioLibre = std::function<std::optional<qint64>(const QByteArray &carpeta)>;

/// Whether what is taken out of an archive into the temporary folder has room
/// there, beside 100 MiB that are kept free. None when `bytes` (0 or more) fit so,
/// or when `libre` cannot tell; otherwise the message for the user, who reads the
/// two sizes without the margin. `paraQue` is its beginning: "Para abrirlo". Any
/// thread.
std::optional<QString> faltaEspacio(const QString &paraQue, qint64 bytes,
                                    const EspacioLibre &libre);

/// A byte count for the user: multiples of 1000, bytes and kB whole, MB with
/// one decimal, larger ones with two, the number as the locale writes it. May
/// be negative. Any thread.
QString textoDeBytes(qint64 bytes, const QLocale &local = QLocale());
