#include "cifrado/secreto.h"

#include <new>
#include <sys/prctl.h>

namespace orcalin {
namespace {

/// Once, before the first secret. From here on the process leaves no core dump
/// (the library's flag on its pages does not reach registers and stacks), and
/// the user's other processes can neither trace it nor read its memory.
bool prepara() {
    return prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0 && sodium_init() >= 0;
}

unsigned char *reserva(std::size_t largo) {
    static const bool lista = prepara();
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
