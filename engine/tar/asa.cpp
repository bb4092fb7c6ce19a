#include "tar/asa.h"

#include <new>

namespace orcalin {

Ficha nuevaFicha() {
    Ficha ficha(archive_entry_new());
    if (!ficha)
        throw std::bad_alloc();
    return ficha;
}

} // namespace orcalin
