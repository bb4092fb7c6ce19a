#include "cifrado/sumidero_age.h"

#include "cifrado/cabecera_age.h"

#include <algorithm>
#include <utility>

namespace orcalin {

SumideroAge::SumideroAge(Sumidero &abajoDado, Secreto contrasena, int factor)
    : abajo(abajoDado)
    , clave(Secreto::alAzar(largoClaveFichero))
    , sellado(trozoSellado) {
    randombytes_buf(nonce.data(), nonce.size());
    sello.emplace(clave, nonce);
    derivada = std::async(std::launch::async, [contrasena = std::move(contrasena), factor, this] {
        return CabeceraAge::crea(contrasena, factor, clave);
    });
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
    if (derivada.valid())
        empieza();
    const std::size_t largo = sello->sella(trozo, numero++, ultimo, sellado);
    abajo.escribe(Octetos(sellado).first(largo));
}

void SumideroAge::empieza() {
    texto = derivada.get();
    abajo.escribe({reinterpret_cast<const unsigned char *>(texto.data()), texto.size()});
    abajo.escribe(nonce);
}

} // namespace orcalin
