#pragma once

#include "flujo/compresor.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace orcalin {

/// Cuts a stream into frames, has them compressed by several threads, and
/// writes them in order. The sink below is used on the caller's thread only.
/// What is held at any time is bounded: two frames more than there are threads.
class SumideroMarcos : public Receptor {
public:
    /// Hears, about ten times a second and on the caller's thread, how many
    /// bytes of the stream are compressed.
    using AlAvanzar = std::function<void(std::uint64_t bytes)>;

    /// `abajo` must outlive this.
    SumideroMarcos(Receptor &abajo, Compresion compresion, AlAvanzar alAvanzar);
    /// Without acaba(): gives up what is under way.
    ~SumideroMarcos() override;

    void escribe(Octetos datos) override;

    /// That an entry with about `bytes` of content begins here: where a frame
    /// had best be cut so that the entry is in one frame and among its like.
    void entrada(Trato trato, std::uint64_t bytes);

    /// Where in the stream the next byte goes.
    [[nodiscard]] std::uint64_t posicion() const { return hastaEste + actual.size(); }

    /// Completes the frames; nothing may be written afterwards. Throws what a
    /// thread threw, and what the sink below throws.
    void acaba();

    /// In the order of the stream, once it is complete.
    [[nodiscard]] const std::vector<Marco> &marcos() const { return escritos; }

private:
    struct Encargo {
        std::vector<unsigned char> crudo;
        Trato trato = Trato::otro;
        std::uint64_t largo = 0;
        std::vector<unsigned char> hecho;
        std::exception_ptr fallo;
        bool listo = false;
    };

    void encarga();
    void entrega();
    void trabaja();

    Receptor &abajo;
    Compresion compresion;
    AlAvanzar alAvanzar;
    std::vector<unsigned char> actual;
    Trato trato = Trato::otro; // of what is in `actual`
    std::uint64_t hastaEste = 0;
    std::vector<Marco> escritos;
    Avance avance;

    std::mutex cerrojo; // what follows is shared with the threads
    std::condition_variable hayEncargo;
    std::condition_variable hayHecho;
    std::deque<std::unique_ptr<Encargo>> enVuelo; // in order of the stream
    std::size_t tomados = 0;                      // of `enVuelo`, from the front
    bool fin = false;
    std::vector<std::jthread> obreros;
};

} // namespace orcalin
