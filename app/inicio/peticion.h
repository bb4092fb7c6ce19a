#pragma once

#include "puertos/ficha.h"

#include <QStringList>

/// Something that the application is asked for: by the command line that starts
/// it, or by another program once it runs.
struct Peticion {
    enum class Que {
        Activar,   ///< the window
        Ficheros,  ///< files opened with the application
        Comprimir, ///< the service of that name
        Abrir,     ///< likewise
        Salir,
    };

    Que que = Que::Activar;
    QStringList uris; ///< as sent: anything may stand there
    Ficha ficha = {};
};
