#pragma once

#include <chrono>

/// Seconds since a job started. Copied with the job.
class Cronometro {
public:
    void empieza() { m_inicio = Reloj::now(); }

    [[nodiscard]] double segundos() const {
        return std::chrono::duration<double>(Reloj::now() - m_inicio).count();
    }

private:
    using Reloj = std::chrono::steady_clock;
    Reloj::time_point m_inicio;
};
