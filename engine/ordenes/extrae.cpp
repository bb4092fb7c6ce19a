#include "ordenes/ordenes.h"

#include "comun/fallo.h"
#include "comun/marcha.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "saque/extraccion.h"

#include <cerrno>
#include <unistd.h>

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

/// From the destination as the current folder every path of the archive is
/// taken, so that links on the way to the destination are the user's business.
void entraEn(const std::filesystem::path &destino) {
    std::error_code error;
    std::filesystem::create_directories(destino, error);
    if (error)
        falla("no se puede crear la carpeta de destino", error.value());
    if (chdir(destino.c_str()) != 0)
        falla("no se puede entrar en la carpeta de destino", errno);
}

} // namespace

void extrae(const PedidoExtraer &pedido) {
    atiendeCancelacion("extracción cancelada");
    const std::string ruta = rutaPedida(pedido);
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    entraEn(pedido.destino);
    Avisos avisos;
    const Marcha marcha("Sacando", [&fichero = archivo.enElDisco()] {
        return Marcha::Punto{fichero.leidos(), fichero.largo()};
    });
    if (!Extraccion(archivo, ruta, avisos).saca() && !pedido.todo)
        noEsta(pedido.entrada);
    avisos.remata("sacar bien");
}

} // namespace orcalin
