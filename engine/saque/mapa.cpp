#include "saque/mapa.h"

#include "comun/cifra.h"
#include "comun/fallo.h"

#include <algorithm>

namespace orcalin {

Mapa::Mapa(Indice &indice, const std::string &pedidaDada)
    : pedida(pedidaDada) {
    for (Asiento asiento; indice.siguiente(asiento);) {
        const auto cifra = cifraDe(asiento.ruta);
        lugares.emplace_back(asiento.lugar, cifra);
        if (asiento.incompleta)
            incompletas.insert(cifra);
        if (pedida.empty())
            comparacion.enElIndice(asiento);
        else
            encarga(asiento);
    }
    lugares.emplace_back(indice.fin().desde, 0);
    std::sort(lugares.begin(), lugares.end());
    // Behind the files themselves, since the first of a place gets the content.
    for (auto &[lugar, ruta] : ligados)
        pedidos[lugar].comos.push_back(std::move(ruta));
}

void Mapa::encarga(const Asiento &asiento) {
    if (asiento.tipo == 'd' && asiento.ruta != pedida && esDe(pedida, asiento.ruta))
        deCamino.emplace_back(asiento.ruta, asiento.permisos);
    if (!esDe(asiento.ruta, pedida))
        return;
    if (asiento.tipo == 'h') {
        ligados.emplace_back(asiento.enlazado, asiento.ruta);
        return;
    }
    auto &encargo = pedidos[asiento.lugar];
    if (std::exchange(encargo.conElla, true))
        throw Fallo("el índice está dañado");
    encargo.comos.push_back(asiento.ruta);
}

std::vector<std::size_t> Mapa::marcosPedidos(const Indice &indice) const {
    std::vector<std::size_t> marcos;
    for (const auto &[lugar, encargo] : pedidos) {
        const auto hasta = indice.marcoDe(siguiente(lugar + 1) - 1);
        auto marco = indice.marcoDe(lugar);
        if (!marcos.empty())
            marco = std::max(marco, marcos.back() + 1);
        for (; marco <= hasta; ++marco)
            marcos.push_back(marco);
    }
    return marcos;
}

std::uint64_t Mapa::siguiente(std::uint64_t lugar) const {
    const auto hallado =
        std::lower_bound(lugares.begin(), lugares.end(), std::pair{lugar, std::uint64_t{0}});
    return hallado == lugares.end() ? lugares.back().first : hallado->first;
}

bool Mapa::esta(const std::string &ruta, std::uint64_t lugar) const {
    return std::binary_search(lugares.begin(), lugares.end(), std::pair{lugar, cifraDe(ruta)});
}

bool Mapa::incompleta(const std::string &ruta) const {
    return !incompletas.empty() && incompletas.contains(cifraDe(ruta));
}

} // namespace orcalin
