#pragma once

#include "inicio/peticion.h"

#include <QString>

#include <chrono>

/// Handing a request over to the application that runs in this session.
namespace bus {

struct Entrega {
    enum class Fin {
        Hecha,
        Rechazada,  ///< `texto` says why, for the user
        Nadie,      ///< there is no such application, or no bus
        NoContesta, ///< there is one, but it does not answer
    };
    Fin fin = Fin::Nadie;
    QString texto = {};
};

/// Whether the bus may start the application when it does not run.
enum class Arranque { No, Si };

/// Blocks until the application has answered, up to `plazo`. Any thread that
/// does not serve the application's own calls.
Entrega entrega(const Peticion &peticion, Arranque arranque, std::chrono::milliseconds plazo);

} // namespace bus
