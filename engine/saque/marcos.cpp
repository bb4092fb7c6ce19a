#include "saque/marcos.h"

#include "comun/medidas.h"

#include <algorithm>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = mebi;
// The largest frames, of 64 MiB, leave little beside them of 150 MiB, with what
// decompressing them takes.
constexpr std::size_t enUnMarco = 64;
constexpr std::size_t deMas = 16;
constexpr std::size_t alMenos = 48; // blocks: three ordinary frames
constexpr std::size_t ninguno = SIZE_MAX;

/// Of the largest frame.
std::size_t bloquesDe(const Indice &indice) {
    std::uint64_t mayor = 0;
    for (std::size_t i = 0; i < indice.marcos().size(); ++i)
        mayor = std::max(mayor, indice.crudoDe(i));
    return mayor / largoBloque + (mayor % largoBloque == 0 ? 0 : 1);
}

} // namespace

/// A stretch of the stream for one reader.
class Marcos::Lectura : public Fuente {
public:
    explicit Lectura(Marcos &deQuien)
        : marcos(deQuien) {}
    std::size_t lee(Hueco hueco) override { return marcos.lee(hueco); }

private:
    Marcos &marcos;
};

Marcos::Marcos(const Archivo &archivoDado, const Indice &indiceDado,
               std::vector<std::size_t> cuales)
    : archivo(archivoDado)
    , indice(indiceDado)
    , bloques(std::max(alMenos, bloquesDe(indice) + deMas))
    , hilo([this, cuales = std::move(cuales)] { adelanta(cuales); }) {
    enCurso.numero = ninguno;
}

Marcos::~Marcos() {
    const std::lock_guard guarda(cerrojo);
    abandonada = true;
    cambio.notify_all();
}

bool Marcos::caben(const Indice &indice) {
    return bloquesDe(indice) <= enUnMarco;
}

std::unique_ptr<Fuente> Marcos::desde(std::uint64_t lugar) {
    const auto numero = indice.marcoDe(lugar);
    while (enCurso.numero != numero)
        if (!toma(numero))
            throw Fallo("el archivo está incompleto");
    if (!enCurso.sano)
        throw MarcoDanado(numero);
    for (auto falta = lugar - indice.marcos()[numero].desde; entregados < falta;) {
        const auto parte =
            std::min<std::uint64_t>(falta - entregados, enCurso.bloques.front().size() - leidos);
        pasa(parte);
    }
    return std::make_unique<Lectura>(*this);
}

std::size_t Marcos::lee(Hueco hueco) {
    if (enCurso.bloques.empty()) {
        if (!toma(enCurso.numero + 1))
            return 0;
        if (!enCurso.sano)
            throw MarcoDanado(enCurso.numero);
    }
    const auto pendiente = Octetos(enCurso.bloques.front()).subspan(leidos);
    const auto parte = pendiente.first(std::min(pendiente.size(), hueco.size()));
    std::copy(parte.begin(), parte.end(), hueco.begin());
    pasa(parte.size());
    return parte.size();
}

/// That so many bytes of the first block are done with.
void Marcos::pasa(std::size_t bytes) {
    leidos += bytes;
    entregados += bytes;
    if (leidos < enCurso.bloques.front().size())
        return;
    devuelve(std::move(enCurso.bloques.front()));
    enCurso.bloques.pop_front();
    leidos = 0;
}

/// Goes on to the next frame, up to `hasta`; false if there is none so far.
bool Marcos::toma(std::size_t hasta) {
    while (!enCurso.bloques.empty()) {
        devuelve(std::move(enCurso.bloques.front()));
        enCurso.bloques.pop_front();
    }
    std::unique_lock guarda(cerrojo);
    cambio.wait(guarda, [this] { return !listos.empty() || terminada; });
    if (listos.empty() || listos.front().numero > hasta)
        return false;
    enCurso = std::move(listos.front());
    listos.pop_front();
    leidos = 0;
    entregados = 0;
    if (enCurso.fallo)
        std::rethrow_exception(enCurso.fallo);
    return true;
}

void Marcos::adelanta(const std::vector<std::size_t> &cuales) {
    for (const auto numero : cuales) {
        Marco marco = descomprime(numero);
        const std::lock_guard guarda(cerrojo);
        if (abandonada)
            return;
        listos.push_back(std::move(marco));
        cambio.notify_all();
    }
    const std::lock_guard guarda(cerrojo);
    terminada = true;
    cambio.notify_all();
}

Marcos::Marco Marcos::descomprime(std::size_t numero) {
    Marco marco;
    marco.numero = numero;
    try {
        marco.sano = llena(marco);
    } catch (const Fallo &) {
        marco.sano = false;
    } catch (...) {
        marco.fallo = std::current_exception();
    }
    if (!marco.sano || marco.fallo)
        for (; !marco.bloques.empty(); marco.bloques.pop_back())
            devuelve(std::move(marco.bloques.back()));
    return marco;
}

/// False if it is not as long as it should be, or nobody wants it any more. Its
/// own checksum was compared on the way. To compare the one of the index as well,
/// which is for proving and not for finding, would take as long as all the rest.
bool Marcos::llena(Marco &marco) {
    const auto crudo = indice.crudoDe(marco.numero);
    const auto fuente = archivo.marco(indice, marco.numero);
    std::uint64_t total = 0;
    for (bool sigue = true; sigue && total <= crudo;) {
        Bloque bloque;
        if (!pide(bloque))
            return false;
        bloque.resize(largoBloque);
        bloque.resize(orcalin::llena(*fuente, bloque));
        total += bloque.size();
        sigue = bloque.size() == largoBloque;
        if (bloque.empty())
            devuelve(std::move(bloque));
        else
            marco.bloques.push_back(std::move(bloque));
    }
    return total == crudo;
}

/// Waits for room for a block; false if nobody wants it any more.
bool Marcos::pide(Bloque &bloque) {
    std::unique_lock guarda(cerrojo);
    cambio.wait(guarda, [this] { return enUso < bloques || abandonada; });
    if (abandonada)
        return false;
    ++enUso;
    if (!libres.empty()) {
        bloque = std::move(libres.back());
        libres.pop_back();
    }
    return true;
}

void Marcos::devuelve(Bloque bloque) {
    const std::lock_guard guarda(cerrojo);
    --enUso;
    libres.push_back(std::move(bloque));
    cambio.notify_all();
}

} // namespace orcalin
