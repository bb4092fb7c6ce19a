#pragma once

#include "empaque/recorrido.h"

#include <chrono>
#include <cstdint>
#include <deque>

namespace orcalin {

/// Tells on standard error how far the packing has come, about ten times a
/// second: `12/40 ficheros (30.5%), 7 MiB`. It goes by the stream that has been
/// compressed, because reading is far ahead of that, and to a small part by what
/// was read back. The percentage never goes
/// back or past 100.0. That is for programs; on a terminal a line for people is
/// redrawn in place.
class Progreso {
public:
    /// Where there is no terminal, silent unless `pedido`.
    Progreso(bool pedido, const Plan &plan);
    Progreso(const Progreso &) = delete;
    Progreso &operator=(const Progreso &) = delete;
    ~Progreso();

    /// That the key is being derived, which takes a while.
    void derivaClave() const;

    /// That there is nothing more to do about `pieza`, packed or not, once the
    /// stream is compressed up to `hasta`.
    void termina(const Pieza &pieza, std::uint64_t hasta);

    /// That `comprimidos` bytes of the stream are compressed, and `releidos` of
    /// them have been read back.
    void avanza(std::uint64_t comprimidos, std::uint64_t releidos);

    /// The last line: everything is done.
    void acaba();

private:
    using Reloj = std::chrono::steady_clock;

    void di(std::uint64_t milesimas);

    enum class Modo { Nada, Lineas, EnElSitio };

    Modo modo;
    Reloj::time_point inicio;
    std::uint64_t ficheros = 0;
    std::uint64_t ficherosHechos = 0;
    std::uint64_t previstos = 0;       // bytes of the whole stream, more or less
    std::uint64_t hechos = 0;          // bytes of it that are compressed
    std::deque<std::uint64_t> finales; // of the files that are still to be counted
    Reloj::time_point proxima;
};

} // namespace orcalin
