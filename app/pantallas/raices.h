#pragma once

#include "contenido.h"

#include <QStringList>

/// What is to be taken out so that all of a choice of entries is.
struct Raices {
    QStringList rutas; ///< as listed, none twice, none below a folder among them
    qint64 bytes = 0;  ///< with all that is below the folders; at most 2^61
};

/// For the entries of these numbers. Takes long for many; any thread.
Raices raicesDe(const Contenido &contenido, const std::vector<uint32_t> &elegidas);
