#include "flujo/fuente_adelantada.h"

#include "comun/medidas.h"

#include <algorithm>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = mebi;
constexpr std::size_t bloques = 8;

} // namespace

FuenteAdelantada::FuenteAdelantada(std::unique_ptr<Fuente> lentaDada)
    : lenta(std::move(lentaDada))
    , libres(bloques)
    , hilo([this] { adelanta(); }) {}

FuenteAdelantada::~FuenteAdelantada() {
    const std::lock_guard guarda(cerrojo);
    abandonada = true;
    cambio.notify_all();
}

std::size_t FuenteAdelantada::lee(Hueco hueco) {
    if (pendiente.empty() && !repone())
        return 0;
    const auto parte = pendiente.first(std::min(pendiente.size(), hueco.size()));
    std::copy(parte.begin(), parte.end(), hueco.begin());
    pendiente = pendiente.subspan(parte.size());
    return parte.size();
}

bool FuenteAdelantada::repone() {
    std::unique_lock guarda(cerrojo);
    if (!actual.empty())
        libres.push_back(std::move(actual));
    actual.clear();
    cambio.notify_all();
    cambio.wait(guarda, [this] { return !listos.empty() || terminada; });
    if (listos.empty()) {
        if (fallo)
            std::rethrow_exception(fallo);
        return false;
    }
    actual = std::move(listos.front());
    listos.pop_front();
    pendiente = actual;
    return true;
}

void FuenteAdelantada::adelanta() {
    std::exception_ptr ultimo;
    try {
        Bloque bloque;
        while (deja(bloque) && !ultimo && lee(bloque, ultimo)) {
        }
    } catch (...) { // no memory for a block
        ultimo = std::current_exception();
    }
    const std::lock_guard guarda(cerrojo);
    fallo = ultimo;
    terminada = true;
    cambio.notify_all();
}

/// Fills `bloque` as far as the data go: what comes before damage is handed
/// over, too. False if there is none.
bool FuenteAdelantada::lee(Bloque &bloque, std::exception_ptr &ultimo) {
    bloque.resize(largoBloque);
    std::size_t hay = 0;
    try {
        while (hay < bloque.size()) {
            const auto leidos = lenta->lee(Hueco(bloque).subspan(hay));
            if (leidos == 0)
                break;
            hay += leidos;
        }
    } catch (...) {
        ultimo = std::current_exception();
    }
    bloque.resize(hay);
    return hay > 0;
}

/// Hands over a block, if it has anything in it, and takes a free one in its
/// place. False when nobody wants any more.
bool FuenteAdelantada::deja(Bloque &bloque) {
    std::unique_lock guarda(cerrojo);
    if (!bloque.empty())
        listos.push_back(std::move(bloque));
    cambio.notify_all();
    cambio.wait(guarda, [this] { return !libres.empty() || abandonada; });
    if (abandonada)
        return false;
    bloque = std::move(libres.front());
    libres.pop_front();
    return true;
}

} // namespace orcalin
