#include "cifrado/secreto.h"

#include <new>

namespace orcalin {
namespace {

unsigned char *reserva(std::size_t largo) {
    // Every use of the library begins with a secret, so it is readied here.
    static const bool lista = sodium_init() >= 0;
    void *memoria = lista ? sodium_malloc(largo) : nullptr;
    if (memoria == nullptr)
        throw std::bad_alloc();
    sodium_memzero(memoria, largo);
    return static_cast<unsigned char *>(memoria);
}

} // namespace

Secreto::Secreto(std::size_t largoPedido)
    : memoria(reserva(largoPedido))
    , largo(largoPedido) {}

Secreto Secreto::alAzar(std::size_t largo) {
    Secreto secreto(largo);
    randombytes_buf(secreto.data(), largo);
    return secreto;
}

void Secreto::acorta(std::size_t nuevo) {
    sodium_memzero(memoria.get() + nuevo, largo - nuevo);
    largo = nuevo;
}

} // namespace orcalin
