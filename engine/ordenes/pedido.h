#pragma once

#include "cifrado/cabecera_age.h"
#include "cifrado/contrasena.h"

#include <string>
#include <variant>
#include <vector>

namespace orcalin {

/// What the command line asks for. Paths are bytes as they were given; an empty
/// one was not given.
struct PedidoComprimir {
    std::vector<std::string> origenes;
    std::string destino;
    int nivel = 19;
    bool maximo = false;
    bool progreso = false;
    bool cifra = false;
    bool verifica = true;
    std::string ficheroContrasena;
    /// log2 of scrypt's N. Set by --work-factor, which the help does not show:
    /// tests cannot wait for the usual one every time.
    int factor = factorHabitual;
};

struct PedidoListar {
    std::string archivo;
    FicheroContrasena ficheroContrasena;
};

struct PedidoExtraer {
    std::string archivo;
    std::string destino;
    std::string entrada; ///< as `list` prints it
    bool todo = true;    ///< no entry was named
    bool reemplaza = false;
    FicheroContrasena ficheroContrasena;
};

struct PedidoComprobar {
    std::string archivo;
    FicheroContrasena ficheroContrasena;
};

/// A text for standard output, line ends included: the help or the version.
struct PedidoTexto {
    std::string texto;
};

using Pedido =
    std::variant<PedidoComprimir, PedidoListar, PedidoExtraer, PedidoComprobar, PedidoTexto>;

/// Understands the command line. Throws Fallo if there is something wrong with it.
Pedido lee(int argc, const char *const *argv);

} // namespace orcalin
