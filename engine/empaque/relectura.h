#pragma once

#include "cifrado/sumidero_age.h"
#include "flujo/fichero_provisional.h"
#include "indice/indice_nuevo.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace orcalin {

/// Reads an archive back from the disk, in a thread of its own, a little behind
/// whoever writes it: what is there decrypts and decompresses to what was read
/// from the sources. Only then the archive may take its name.
class Relectura {
public:
    /// `cifrado`: what encrypts it, or null. Both must outlive this. Throws Fallo,
    /// std::bad_alloc or std::system_error.
    Relectura(const FicheroProvisional &fichero, const SumideroAge *cifrado, Envase envase);
    /// Gives up what is under way.
    ~Relectura();
    Relectura(const Relectura &) = delete;
    Relectura &operator=(const Relectura &) = delete;

    /// `marcos` are the frames so far, in order, `escritos` the bytes in the file.
    /// Throws what acaba() would, as soon as it is known. On one thread, as acaba().
    void sigue(const std::vector<Marco> &marcos, std::uint64_t escritos);

    /// The file is complete and flushed, and ends with `final`: compares all that is left, the
    /// encryption's header, index and trailer among it. Throws Fallo, «lo guardado no se lee igual
    /// que lo leído», also where something cannot be read. `latido` is called about ten times a
    /// second meanwhile.
    void acaba(const std::vector<Marco> &marcos, const IndiceNuevo::Final &final,
               const std::function<void()> &latido);

    /// Bytes of the tar stream that were compared so far.
    [[nodiscard]] std::uint64_t comparados() const {
        return cuenta.load(std::memory_order_relaxed);
    }

private:
    void trabaja();
    void compara();
    bool toma(Marco &marco, bool &completo);
    void comparaMarcos(const Almacen &disco);
    void comparaElFinal(const Almacen &disco);
    void anade(const std::vector<Marco> &marcos);
    void relanza();

    const SumideroAge *cifrado;
    Envase envase;
    Descriptor fichero;
    std::size_t conocidos = 0; // frames that were handed over; the caller's
    std::atomic<std::uint64_t> cuenta = 0;

    std::mutex cerrojo; // what follows is shared with the thread
    std::condition_variable cambio;
    std::deque<Marco> pendientes;
    std::uint64_t escritos = 0;
    std::uint64_t repartidos = 0;            // bytes of the frames that the thread has taken
    std::optional<IndiceNuevo::Final> final; // the file is complete
    std::exception_ptr fallo;
    std::atomic<bool> abandonada = false;
    bool acabada = false;
    std::jthread hilo; // last: it uses all the others
};

} // namespace orcalin
