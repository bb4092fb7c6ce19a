#pragma once

#include "flujo/compresor.h"
#include "flujo/suma.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace orcalin {

/// Cuts a stream into frames, has them compressed by several threads, and
/// writes them in order. The receiver below is used on the caller's thread
/// only. Each frame's sum is taken on that thread as the bytes come in, before
/// anything else happens to them. What waits, to be compressed or to be written, is bounded (see
/// Compresion); it is little where there is only one thread.
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
    [[nodiscard]] std::uint64_t posicion() const { return hastaEste + enEste; }

    /// Completes the frames, and gives back what the threads took; nothing may be
    /// written afterwards. Throws what a thread threw, and what the receiver below throws.
    void acaba();

    /// In the order of the stream, once it is complete.
    [[nodiscard]] const std::vector<Marco> &marcos() const { return escritos; }

private:
    /// A frame on its way.
    struct Encargo {
        Trato trato = Trato::otro;
        Marco marco; // as far as it has come
        std::deque<Bloque> entra;
        bool completo = false; // nothing more comes in
        std::deque<Bloque> sale;
        bool listo = false; // nothing more comes out
        std::exception_ptr fallo;
    };

    void pasa(bool corta);
    void atiende(bool espera);
    bool esperanDemasiados();
    void despide();
    void trabaja();
    void cumple(Encargo &encargo, Compresor &compresor, std::unique_lock<std::mutex> &guarda);

    Receptor &abajo;
    Compresion compresion;
    AlAvanzar alAvanzar;
    std::size_t tope; // of bytes that wait, more or less
    Bloque bocado;    // what has not been passed on yet
    Sumador sumador;  // of the open frame
    Trato trato = Trato::otro;
    std::uint64_t hastaEste = 0; // where the open frame begins
    std::uint64_t enEste = 0;    // bytes in it
    std::vector<Marco> escritos;

    std::mutex cerrojo; // what follows is shared with the threads
    std::condition_variable hayEncargo;
    std::condition_variable hayHecho;
    std::deque<std::unique_ptr<Encargo>> enVuelo; // in order; the last may be open
    std::size_t tomados = 0;                      // of `enVuelo`, from the front
    std::size_t esperan = 0;                      // bytes that wait
    std::uint64_t comprimidos = 0;
    bool fin = false;
    std::vector<std::jthread> obreros; // last: they use all the others
};

} // namespace orcalin
