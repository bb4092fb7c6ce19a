#include "cifrado/sumidero_age.h"

#include "cifrado/cabecera_age.h"

#include <algorithm>

namespace orcalin {

SumideroAge::SumideroAge(Sumidero &abajoDado, const Secreto &contrasena, int factor)
    : abajo(abajoDado)
    , sellado(trozoSellado) {
    const Secreto claveFichero = Secreto::alAzar(largoClaveFichero);
    std::array<unsigned char, largoNonceAge> nonce{};
    randombytes_buf(nonce.data(), nonce.size());
    const std::string cabecera = CabeceraAge::crea(contrasena, factor, claveFichero);
    abajo.escribe({reinterpret_cast<const unsigned char *>(cabecera.data()), cabecera.size()});
    abajo.escribe(nonce);
    sello.emplace(claveFichero, nonce);
    claro.reserve(trozoClaro);
}

void SumideroAge::escribe(Octetos datos) {
    while (!datos.empty()) {
        // A full chunk waits for what follows: only then it is not the last.
        if (claro.size() == trozoClaro)
            sellaPendiente(false);
        if (claro.empty() && datos.size() > trozoClaro) {
            sella(datos.first(trozoClaro), false);
            datos = datos.subspan(trozoClaro);
            continue;
        }
        const auto parte = datos.first(std::min(datos.size(), trozoClaro - claro.size()));
        claro.insert(claro.end(), parte.begin(), parte.end());
        datos = datos.subspan(parte.size());
    }
}

void SumideroAge::cierra() {
    sellaPendiente(true);
    abajo.cierra();
}

void SumideroAge::sellaPendiente(bool ultimo) {
    sella(claro, ultimo);
    claro.clear();
}

void SumideroAge::sella(Octetos trozo, bool ultimo) {
    const std::size_t largo = sello->sella(trozo, numero++, ultimo, sellado);
    abajo.escribe(Octetos(sellado).first(largo));
}

} // namespace orcalin
