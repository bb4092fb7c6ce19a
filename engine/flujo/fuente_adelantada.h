#pragma once

#include "flujo/flujo.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace orcalin {

/// Reads another source in a thread of its own, a few MiB ahead of whoever
/// takes the bytes: decompression goes on while files are being written.
class FuenteAdelantada : public Fuente {
public:
    explicit FuenteAdelantada(std::unique_ptr<Fuente> lenta);
    ~FuenteAdelantada() override;

    std::size_t lee(Hueco hueco) override;

private:
    void adelanta();
    bool lee(Bloque &bloque, std::exception_ptr &ultimo);
    bool deja(Bloque &bloque);
    bool repone();

    std::unique_ptr<Fuente> lenta; // used by the thread alone
    Bloque actual;
    Octetos pendiente; // what of `actual` has not been handed out

    std::mutex cerrojo; // what follows is shared with the thread
    std::condition_variable cambio;
    std::deque<Bloque> listos;
    std::deque<Bloque> libres;
    std::exception_ptr fallo;
    bool terminada = false;
    bool abandonada = false;
    std::jthread hilo; // last: it uses all the others
};

} // namespace orcalin
