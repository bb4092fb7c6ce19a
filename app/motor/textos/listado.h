#pragma once

#include "entrada.h"

#include <QByteArrayView>
#include <QList>

/// The entries of a listing as the engine prints it, in the order of its lines:
///
///     -0644       1234 fotos/a.jpg
///
/// the type, four characters that are not read, spaces, the size, spaces, and
/// the path to the end of the line. A line of another form gives no entry, a
/// size that is no 64-bit number counts as 0. Lines end as in lineas::separa.
/// What is not valid UTF-8 as a whole gives no entries at all. Any thread.
QList<Entrada> leeListado(QByteArrayView salida);
