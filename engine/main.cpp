#include "ordenes/ordenes.h"

int main(int argc, char **argv) {
    return orcalin::ejecuta(argc, argv);
}
