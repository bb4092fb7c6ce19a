#include "saque/fallo_de_entrada.h"

#include "comun/fallo.h"

#include <cerrno>

namespace orcalin {

void fallaEntrada(int numero) {
    if (numero == ENOSPC || numero == EDQUOT || numero == EIO)
        falla("no se puede sacar", numero);
    throw FalloDeEntrada(causa(numero));
}

} // namespace orcalin
