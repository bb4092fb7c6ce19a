#include "flujo/sumidero_marcos.h"

#include <algorithm>
#include <utility>

namespace orcalin {
namespace {

constexpr std::chrono::milliseconds latido{100};

} // namespace

SumideroMarcos::SumideroMarcos(Receptor &abajoDado, Compresion compresionDada,
                               AlAvanzar alAvanzarDado)
    : abajo(abajoDado)
    , compresion(std::move(compresionDada))
    , alAvanzar(std::move(alAvanzarDado)) {}

SumideroMarcos::~SumideroMarcos() {
    avance.abandonado = true;
    const std::lock_guard guarda(cerrojo);
    fin = true;
    tomados = enVuelo.size();
    hayEncargo.notify_all();
}

void SumideroMarcos::escribe(Octetos datos) {
    while (!datos.empty()) {
        // The whole at once: growing it would copy the frame several times.
        if (actual.capacity() == 0)
            actual.reserve(compresion.marco);
        const auto parte = datos.first(std::min(datos.size(), compresion.marco - actual.size()));
        actual.insert(actual.end(), parte.begin(), parte.end());
        datos = datos.subspan(parte.size());
        if (actual.size() == compresion.marco)
            encarga();
    }
    alAvanzar(avance.bytes);
}

void SumideroMarcos::entrada(Trato nuevo, std::uint64_t bytes) {
    const bool sobra = actual.size() + bytes > compresion.marco;
    const bool otra = nuevo != trato && actual.size() >= compresion.aparte;
    if (otra || (sobra && actual.size() >= compresion.marco / 2))
        encarga();
    if (actual.size() < compresion.aparte)
        trato = nuevo;
}

void SumideroMarcos::acaba() {
    if (!actual.empty())
        encarga();
    while (!enVuelo.empty())
        entrega();
}

void SumideroMarcos::encarga() {
    auto encargo = std::make_unique<Encargo>();
    encargo->largo = actual.size();
    encargo->crudo = std::exchange(actual, {});
    encargo->trato = trato;
    hastaEste += encargo->largo;
    {
        const std::lock_guard guarda(cerrojo);
        enVuelo.push_back(std::move(encargo));
        hayEncargo.notify_one();
    }
    // A thread costs memory as soon as it works: no more of them than frames.
    if (obreros.size() < compresion.obreros && obreros.size() < enVuelo.size())
        obreros.emplace_back([this] { trabaja(); });
    while (enVuelo.size() > compresion.obreros)
        entrega();
}

void SumideroMarcos::entrega() {
    std::unique_lock guarda(cerrojo);
    while (!hayHecho.wait_for(guarda, latido, [this] { return enVuelo.front()->listo; }))
        alAvanzar(avance.bytes);
    const auto encargo = std::move(enVuelo.front());
    enVuelo.pop_front();
    --tomados;
    guarda.unlock();
    if (encargo->fallo)
        std::rethrow_exception(encargo->fallo);
    abajo.escribe(encargo->hecho);
    escritos.push_back({encargo->hecho.size(), encargo->largo});
    alAvanzar(avance.bytes);
}

void SumideroMarcos::trabaja() {
    std::unique_ptr<Compresor> compresor;
    std::unique_lock guarda(cerrojo);
    while (true) {
        hayEncargo.wait(guarda, [this] { return fin || tomados < enVuelo.size(); });
        if (tomados >= enVuelo.size())
            return;
        Encargo &encargo = *enVuelo[tomados++];
        guarda.unlock();
        try {
            if (!compresor)
                compresor = compresion.compresor();
            encargo.hecho = compresor->marco(encargo.crudo, encargo.trato, avance);
        } catch (...) {
            encargo.fallo = std::current_exception();
        }
        encargo.crudo = {};
        guarda.lock();
        encargo.listo = true;
        hayHecho.notify_one();
    }
}

} // namespace orcalin
