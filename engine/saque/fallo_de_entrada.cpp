#include "saque/fallo_de_entrada.h"

#include <cerrno>

namespace orcalin {

void fallaEntrada(int numero) {
    if (numero == ENOSPC || numero == EDQUOT || numero == EIO)
        fallaDisco("no se puede sacar", numero);
    throw FalloDeEntrada(causa(numero));
}

void fallaDisco(std::string_view que, int numero) {
    throw FalloDeDisco(std::string(que) + ": " + causa(numero));
}

} // namespace orcalin
