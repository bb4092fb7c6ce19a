#pragma once

#include "entradas.h"

#include <QByteArrayView>

#include <optional>

/// More of a listing than this is not kept: its memory would be the machine's.
constexpr size_t kMaxEntradas = 5'000'000;
constexpr qsizetype kMaxBytesDeListado = qsizetype(1) << 30;

/// The entries of a listing as the engine prints it, in the order of its lines:
///
///     -0644       1234 fotos/a.jpg
///
/// the type, four characters that are not read, spaces, the size, spaces, and
/// the path to the end of the line. A line of another form gives no entry, a
/// size that is no 64-bit number counts as 0. Lines end as in lineas::separa.
/// What is not valid UTF-8 as a whole gives no entries at all. Nothing when
/// there are more than `maximo`. Any thread.
std::optional<Entradas> leeListado(QByteArrayView salida, size_t maximo = kMaxEntradas);
