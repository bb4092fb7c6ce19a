#pragma once

#include "comun/fallo.h"
#include "saque/archivo.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orcalin {

/// That a frame cannot be read, or is not what it was; the others may be.
class MarcoDanado : public Fallo {
public:
    explicit MarcoDanado(std::size_t marcoDado)
        : Fallo("el archivo está dañado")
        , marco(marcoDado) {}
    std::size_t marco;
};

/// Frames of an archive, one after the other. Nothing of a frame is handed out
/// before all of it was decompressed and proved sound. A thread goes ahead, as
/// far as a bounded memory allows; what was handed out makes room at once.
class Marcos {
public:
    /// The frames `cuales`, in ascending order, of an index that passes caben().
    /// Both references must outlive this.
    Marcos(const Archivo &archivo, const Indice &indice, std::vector<std::size_t> cuales);
    Marcos(const Marcos &) = delete;
    Marcos &operator=(const Marcos &) = delete;
    ~Marcos();

    /// Whether every frame fits into the memory meant for them. It is so in what
    /// this program makes; an index may claim anything.
    static bool caben(const Indice &indice);

    /// The tar stream from `lugar` on, to the end of the last frame before a gap
    /// in `cuales`. No place that was passed may be asked for again. Reading
    /// from it throws MarcoDanado, and only a place behind that frame will do then.
    std::unique_ptr<Fuente> desde(std::uint64_t lugar);

    /// The frame that is being handed out.
    [[nodiscard]] std::size_t actual() const { return enCurso.numero; }

private:
    class Lectura;
    struct Marco {
        std::size_t numero = 0;
        std::deque<Bloque> bloques;
        bool sano = true;
        std::exception_ptr fallo; // not of the archive
    };

    void adelanta(const std::vector<std::size_t> &cuales);
    Marco descomprime(std::size_t numero);
    bool pide(Bloque &bloque);
    void devuelve(Bloque bloque);
    bool llena(Marco &marco);
    std::size_t lee(Hueco hueco);
    void pasa(std::size_t bytes);
    bool toma(std::size_t hasta);

    const Archivo &archivo;
    const Indice &indice;
    std::size_t bloques; // most at once
    Marco enCurso;
    std::size_t leidos = 0;       // of its first block
    std::uint64_t entregados = 0; // of it

    std::mutex cerrojo; // what follows is shared with the thread
    std::condition_variable cambio;
    std::deque<Marco> listos;
    std::vector<Bloque> libres;
    std::size_t enUso = 0; // blocks
    bool terminada = false;
    bool abandonada = false;
    std::jthread hilo; // last: it uses all the others
};

} // namespace orcalin
