#pragma once

#include <QByteArray>
#include <QList>

#include <sys/types.h>

/// Starts a program whose standard output and standard error are these two
/// descriptors; standard input is inherited, no other descriptor is. Whatever
/// signals this process ignores or blocks, the program hears them. Arguments
/// without the program's own name. 0, or the errno value that says why nothing
/// was started. Any thread.
[[nodiscard]] int nace(pid_t &pid, const QByteArray &ejecutable,
                       const QList<QByteArray> &argumentos, int salida, int error);
