#include "ordenes/ordenes.h"

#include "comun/fallo.h"
#include "comun/marcha.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "saque/extraccion.h"

namespace orcalin {
namespace {

[[noreturn]] void noEsta(const std::string &entrada) {
    throw Fallo("no está en el archivo: " + citado(desescapa(entrada).value_or(entrada)));
}

/// The path asked for; empty for everything.
std::string rutaPedida(const PedidoExtraer &pedido) {
    if (pedido.todo)
        return "";
    const auto ruta = desescapa(pedido.entrada);
    if (!ruta || normaliza(*ruta).empty())
        noEsta(pedido.entrada);
    return normaliza(*ruta);
}

} // namespace

void extrae(const PedidoExtraer &pedido) {
    atiendeCancelacion("extracción cancelada");
    const std::string ruta = rutaPedida(pedido);
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    Avisos avisos;
    const Marcha marcha("Sacando", [&fichero = archivo.enElDisco()] {
        return Marcha::Punto{fichero.leidos(), fichero.largo()};
    });
    Extraccion extraccion(archivo, ruta, avisos, pedido.destino, pedido.reemplaza);
    if (!extraccion.saca() && !pedido.todo)
        noEsta(pedido.entrada);
    avisos.remata("sacar bien");
    extraccion.vuelca();
}

} // namespace orcalin
