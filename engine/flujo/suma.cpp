#include "flujo/suma.h"

#include <new>

namespace orcalin {
namespace {

/// The library chooses here what this processor does fastest.
bool prepara() {
    static const bool lista = sodium_init() >= 0;
    return lista;
}

} // namespace

Sumador::Sumador() {
    if (!prepara())
        throw std::bad_alloc();
    empieza();
}

void Sumador::anade(Octetos datos) {
    crypto_generichash_update(&estado, datos.data(), datos.size());
}

Suma Sumador::acaba() {
    Suma suma{};
    crypto_generichash_final(&estado, suma.data(), suma.size());
    empieza();
    return suma;
}

void Sumador::empieza() {
    crypto_generichash_init(&estado, nullptr, 0, Suma{}.size());
}

Suma sumaDe(Octetos datos) {
    Sumador sumador;
    sumador.anade(datos);
    return sumador.acaba();
}

} // namespace orcalin
