// Prints the size that the driver measures for a path: for bench/tamano.
#include "lugares/tamano.h"

#include <cstdio>

int main(int argc, char **argv) {
    for (int i = 1; i < argc; ++i)
        std::printf("%lld\n", static_cast<long long>(pesoDe(QByteArray(argv[i]))));
    return 0;
}
