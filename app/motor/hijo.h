#pragma once

#include "descriptor.h"
#include "proceso.h"
#include "tuberia.h"

#include <mutex>

/// The running child of a Proceso: its pidfd and its pipes. The thread that
/// follows it owns all but the pidfd, which `senala` may use from elsewhere.
class Proceso::Hijo {
public:
    /// Spawns the program; 0 or an errno value.
    [[nodiscard]] int arranca(const Orden &orden);

    /// Reads standard error until the child ends, collects it and returns what
    /// is left; all of it without a reader. Blocks; the child's own thread.
    Final sigue(const Lector &lector);

    /// Reads to the end what is to be read and collects the child. Blocks.
    Corrida acompana(Lee que);

    /// Sends a signal to the child unless it has been collected. Any thread.
    void senala(int numero);

    /// Asks it to end, also when it has been stopped.
    void pideFin();

    /// For a child that could not be followed: kills and collects it.
    void descarta();

private:
    [[nodiscard]] bool acabaAntesDe(std::chrono::milliseconds plazo) const;
    [[nodiscard]] QByteArray reparteError(const Lector &lector);
    [[nodiscard]] QByteArray leeHastaElFin(const Tuberia &tuberia) const;
    int recoge();

    std::mutex m_cerrojo; // the pidfd between `senala` and the end
    Descriptor m_pidfd;
    Tuberia m_error;
    Tuberia m_salida;
};
