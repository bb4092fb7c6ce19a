#pragma once

#include "inicio/delegado.h"

/// The application's place on the session bus: offers what it takes in to other
/// programs. Without a bus everything here does nothing. Main thread only; calls
/// come in through the event loop.
class Puesto : public SistemaDeServicios {
public:
    /// Offers the object and takes the name, unless another process has it.
    void registra(Recepcion &recepcion) override;

    /// Asks the bus to look for service files again; does not wait for it.
    void refresca() override;

    /// Whether this process has the name.
    static bool esNuestro();

    /// Gives the name up: from now on a start is another application's. For the
    /// way out, on which nobody answers any more.
    static void deja();
};
