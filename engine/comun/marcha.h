#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace orcalin {

/// How far something has come, on one line for a person: a bar, the share done,
/// `detalle`, and after a while how much longer it will take.
std::string renglonDeMarcha(std::string_view que, std::uint64_t milesimas, std::string_view detalle,
                            std::chrono::steady_clock::duration transcurrido);

/// Redraws that line on the terminal ten times a second while it lives, from a
/// thread of its own, so that whoever does the work need not think of it.
/// Without a terminal it does nothing.
class Marcha {
public:
    struct Punto {
        std::uint64_t hecho;
        std::uint64_t total; ///< bytes
    };

    /// `donde` is called on that thread, until the destructor returns.
    Marcha(std::string que, std::function<Punto()> donde);
    Marcha(const Marcha &) = delete;
    Marcha &operator=(const Marcha &) = delete;
    ~Marcha();

private:
    void sigue();

    std::string que;
    std::function<Punto()> donde;
    std::mutex turno;
    std::condition_variable aviso;
    bool acabada = false;
    std::thread hilo;
};

} // namespace orcalin
