#pragma once

#include <QLocale>
#include <QString>

/// A byte count for the user: multiples of 1000, bytes and kB whole, MB with
/// one decimal, larger ones with two, the number as the locale writes it. May
/// be negative. Any thread.
QString textoDeBytes(qint64 bytes, const QLocale &local = QLocale());
