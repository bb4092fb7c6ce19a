#include "flujo/sumidero_marcos.h"

#include "comun/medidas.h"

#include <algorithm>
#include <lzma.h>
#include <utility>

namespace orcalin {
namespace {

constexpr std::chrono::milliseconds latido{100};
constexpr std::size_t largoBocado = mebi / 2;

/// Gives a lock up for a while.
class Suelta {
public:
    explicit Suelta(std::unique_lock<std::mutex> &guardaDada)
        : guarda(guardaDada) {
        guarda.unlock();
    }
    Suelta(const Suelta &) = delete;
    Suelta &operator=(const Suelta &) = delete;
    ~Suelta() { guarda.lock(); }

private:
    std::unique_lock<std::mutex> &guarda;
};

} // namespace

SumideroMarcos::SumideroMarcos(Receptor &abajoDado, Compresion compresionDada,
                               AlAvanzar alAvanzarDado)
    : abajo(abajoDado)
    , compresion(std::move(compresionDada))
    , alAvanzar(std::move(alAvanzarDado))
    , tope(compresion.obreros == 1 ? 8 * mebi : compresion.espera) {
    bocado.reserve(largoBocado);
}

SumideroMarcos::~SumideroMarcos() {
    despide();
}

void SumideroMarcos::despide() {
    const std::lock_guard guarda(cerrojo);
    fin = true;
    hayEncargo.notify_all();
}

void SumideroMarcos::escribe(Octetos datos) {
    while (!datos.empty()) {
        const auto cabe =
            std::min<std::uint64_t>(largoBocado - bocado.size(), compresion.marco - enEste);
        const auto parte = datos.first(std::min<std::uint64_t>(datos.size(), cabe));
        sumador.anade(parte);
        bocado.insert(bocado.end(), parte.begin(), parte.end());
        enEste += parte.size();
        datos = datos.subspan(parte.size());
        if (bocado.size() == largoBocado || enEste == compresion.marco)
            pasa(enEste == compresion.marco);
    }
}

void SumideroMarcos::entrada(Trato nuevo, std::uint64_t bytes) {
    const bool sobra = enEste + bytes > compresion.marco;
    const bool otra = nuevo != trato && enEste >= compresion.aparte;
    if (otra || (sobra && enEste >= compresion.marco / 2))
        pasa(true);
    if (enEste == 0)
        trato = nuevo;
}

void SumideroMarcos::acaba() {
    if (enEste > 0)
        pasa(true);
    while (!enVuelo.empty())
        atiende(true);
    despide();
    obreros.clear();
}

/// Hands what there is to the open frame, which is the last one.
void SumideroMarcos::pasa(bool corta) {
    std::unique_lock guarda(cerrojo);
    if (enVuelo.empty() || enVuelo.back()->completo) {
        enVuelo.push_back(std::make_unique<Encargo>());
        enVuelo.back()->trato = trato;
    }
    Encargo &abierto = *enVuelo.back();
    esperan += bocado.size();
    abierto.marco.crudo += bocado.size();
    abierto.entra.push_back(std::exchange(bocado, {}));
    abierto.completo = corta;
    if (corta)
        abierto.marco.suma = sumador.acaba();
    // A thread costs memory as soon as it works: no more of them than frames.
    if (obreros.size() < std::min<std::size_t>(compresion.obreros, enVuelo.size()))
        obreros.emplace_back([this] { trabaja(); });
    hayEncargo.notify_all();
    guarda.unlock();
    bocado.reserve(largoBocado);
    if (corta)
        hastaEste += std::exchange(enEste, 0);
    atiende(false);
    while (esperanDemasiados())
        atiende(true);
}

bool SumideroMarcos::esperanDemasiados() {
    const std::lock_guard guarda(cerrojo);
    return esperan > tope;
}

/// Writes what is ready of the first frame; if asked to, waits a moment for it.
void SumideroMarcos::atiende(bool espera) {
    std::unique_lock guarda(cerrojo);
    Encargo &primero = *enVuelo.front();
    if (espera)
        hayHecho.wait_for(guarda, latido,
                          [&primero] { return !primero.sale.empty() || primero.listo; });
    if (primero.fallo)
        std::rethrow_exception(primero.fallo);
    const auto hecho = std::exchange(primero.sale, {});
    for (const auto &bloque : hecho)
        esperan -= bloque.size();
    const bool listo = primero.listo;
    const auto cuantos = comprimidos;
    guarda.unlock();
    for (const auto &bloque : hecho) {
        abajo.escribe(bloque);
        primero.marco.crc = lzma_crc64(bloque.data(), bloque.size(), primero.marco.crc);
        primero.marco.empacado += bloque.size();
    }
    alAvanzar(cuantos);
    if (!listo)
        return;
    escritos.push_back(primero.marco);
    guarda.lock();
    enVuelo.pop_front();
    --tomados;
}

void SumideroMarcos::trabaja() {
    std::unique_ptr<Compresor> compresor;
    std::unique_lock guarda(cerrojo);
    while (true) {
        hayEncargo.wait(guarda, [this] { return fin || tomados < enVuelo.size(); });
        if (fin)
            return;
        Encargo &encargo = *enVuelo[tomados++];
        try {
            if (!compresor)
                compresor = compresion.compresor();
            cumple(encargo, *compresor, guarda);
        } catch (...) {
            encargo.fallo = std::current_exception();
        }
        encargo.listo = true;
        hayHecho.notify_one();
    }
}

/// Compresses the frame while it is still being filled. The lock is held
/// before and after, also when this throws.
void SumideroMarcos::cumple(Encargo &encargo, Compresor &compresor,
                            std::unique_lock<std::mutex> &guarda) {
    for (bool primero = true, ultimo = false; !ultimo; primero = false) {
        hayEncargo.wait(guarda, [&] { return fin || !encargo.entra.empty(); });
        if (fin)
            return;
        const Bloque entra = std::move(encargo.entra.front());
        encargo.entra.pop_front();
        ultimo = encargo.completo && encargo.entra.empty();
        Bloque sale;
        {
            const Suelta suelta(guarda);
            if (primero)
                compresor.empieza(entra, ultimo, encargo.trato);
            compresor.toma(entra, ultimo, sale);
        }
        esperan -= entra.size();
        esperan += sale.size();
        comprimidos += entra.size();
        encargo.sale.push_back(std::move(sale));
        hayHecho.notify_one();
    }
}

} // namespace orcalin
