#pragma once

#include "empaque/recorrido.h"

#include <chrono>
#include <cstdint>

namespace orcalin {

/// Tells on standard error how far the packing has come, about ten times a
/// second: `12/40 ficheros (30.5%), 7 MiB`. The percentage is of the bytes that
/// were planned and never goes back or past 100.0; the MiB are those read. That
/// is for programs; on a terminal a line for people is redrawn in place.
class Progreso {
public:
    /// Where there is no terminal, silent unless `pedido`.
    Progreso(bool pedido, const Plan &plan);
    Progreso(const Progreso &) = delete;
    Progreso &operator=(const Progreso &) = delete;
    ~Progreso();

    /// That the key is being derived, which takes a while.
    void derivaClave() const;

    /// That `bytes` more of `pieza` were read.
    void lee(const Pieza &pieza, std::uint64_t bytes);

    /// That there is nothing more to do about `pieza`, packed or not.
    void termina(const Pieza &pieza);

    /// The last line: everything is done.
    void acaba();

private:
    using Reloj = std::chrono::steady_clock;

    void cuenta();
    void di(std::uint64_t milesimas);

    enum class Modo { Nada, Lineas, EnElSitio };

    Modo modo;
    Reloj::time_point inicio;
    std::uint64_t ficheros = 0;
    std::uint64_t ficherosHechos = 0;
    std::uint64_t bytes = 0;
    std::uint64_t bytesHechos = 0; // of the pieces that are done with
    std::uint64_t bytesDeEsta = 0; // of the piece being read
    std::uint64_t leidos = 0;
    Reloj::time_point proxima;
};

} // namespace orcalin
