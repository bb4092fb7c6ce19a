#include "fondo.h"

QThreadPool &colaDeFondo() {
    constexpr int kHilos = 64;
    static auto *cola = [] {
        auto *nueva = new QThreadPool;
        nueva->setMaxThreadCount(kHilos);
        return nueva;
    }();
    return *cola;
}
