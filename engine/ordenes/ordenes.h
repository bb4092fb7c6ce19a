#pragma once

#include "ordenes/pedido.h"

namespace orcalin {

/// The commands. Each throws Fallo (or std::bad_alloc) if not everything that
/// was asked for could be done.
void comprime(const PedidoComprimir &pedido);
void lista(const PedidoListar &pedido);
void extrae(const PedidoExtraer &pedido);
void comprueba(const PedidoComprobar &pedido);

/// The whole program: understands the command line, does what it asks for, and
/// tells a failure on standard error. Returns the exit status.
int ejecuta(int argc, const char *const *argv) noexcept;

} // namespace orcalin
