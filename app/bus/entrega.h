#pragma once

#include "inicio/dosarranques.h"

#include <QString>

#include <chrono>

/// Handing a request over to the application that runs in this session.
namespace bus {

struct Entrega {
    using Fin = DosArranques::Fin;
    Fin fin = Fin::Nadie;
    QString texto = {}; ///< of a refusal: why, for the user
};

/// Whether the bus may start the application when it does not run.
enum class Arranque { No, Si };

/// Blocks until the application has answered, up to `plazo`. Any thread that
/// does not serve the application's own calls.
Entrega entrega(const Peticion &peticion, Arranque arranque, std::chrono::milliseconds plazo);

} // namespace bus
