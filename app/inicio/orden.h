#pragma once

#include "peticion.h"

#include <optional>

/// What the program was started for.
struct Orden {
    enum class Modo {
        Ventana, ///< to be the application, or to hand over to the one that runs
        Espera,  ///< to be the application, without a window until one is asked for
        Cliente, ///< to call a service of the application and end
    };

    Modo modo = Modo::Ventana;
    Peticion peticion;

    /// Reads the command line; none: nobody can make sense of it. Relative
    /// paths count from this process's folder; names need not be valid UTF-8,
    /// so this comes before Qt decodes them.
    ///
    ///     [FILE…]                          opens the first archive among them
    ///     --servicio comprimir|abrir FILE… calls the service (Cliente)
    ///     --atiende comprimir|abrir FILE…  starts and serves that call itself
    ///     --espera                         what the session bus starts
    ///
    /// A "--" before the files is skipped.
    static std::optional<Orden> lee(int argc, char **argv);
};
