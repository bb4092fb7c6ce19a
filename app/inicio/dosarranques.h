#pragma once

#include "orden.h"

#include <functional>
#include <optional>

/// Of several starts of the program in one session one is the application; the
/// others hand over to it what they were started for, and end. Decides which of
/// them this one is. Main thread only.
class DosArranques {
public:
    /// How handing over ended.
    enum class Fin {
        Hecha,
        Rechazada,  ///< the application does not want it; the user has been told
        Nadie,      ///< there is no such application, or no bus
        NoContesta, ///< there is one, but it does not answer
    };
    using Entrega = std::function<Fin(const Peticion &)>;

    /// `entrega` tries to hand over to the application that runs.
    DosArranques(Orden orden, Entrega entrega);

    /// Before there is anything of a window: what this process ends with, or none
    /// when it goes on. Once, first.
    std::optional<int> alEmpezar();

    /// The same once it has tried to get the application's name on the bus.
    std::optional<int> trasPedirElNombre(bool esNuestro);

private:
    [[nodiscard]] static std::optional<int> estadoTras(Fin fin);

    const Orden m_orden;
    const Entrega m_entrega;
    Fin m_antes = Fin::Nadie;
};
