#pragma once

#include "encargo.h"
#include "ruta.h"

/// The run of the engine that takes one entry, as listed, or everything out of
/// an archive into the folder `destino` (a path). Any thread.
inline Encargo::Argumentos extraccion(const QUrl &archivo, const QByteArray &destino,
                                      const std::optional<QString> &entrada) {
    Encargo::Argumentos argumentos{"extract", ruta::nativa(archivo), "-o", destino};
    if (entrada)
        argumentos << "--file" << entrada->toUtf8();
    return argumentos;
}
