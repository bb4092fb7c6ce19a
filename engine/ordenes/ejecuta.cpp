#include "ordenes/ordenes.h"

#include "comun/consola.h"
#include "comun/fallo.h"
#include "comun/senales.h"

#include <new>
#include <system_error>

namespace orcalin {
namespace {

struct Orden {
    void operator()(const PedidoComprimir &pedido) const { comprime(pedido); }
    void operator()(const PedidoListar &pedido) const { lista(pedido); }
    void operator()(const PedidoExtraer &pedido) const { extrae(pedido); }
    void operator()(const PedidoComprobar &pedido) const { comprueba(pedido); }
    void operator()(const PedidoTexto &pedido) const {
        Salida salida;
        salida.texto(pedido.texto);
        salida.vacia();
    }
};

/// Spanish in one line for whatever went wrong.
std::string descripcion() {
    try {
        throw;
    } catch (const Fallo &fallo) {
        return fallo.what();
    } catch (const std::bad_alloc &) {
        return "no hay memoria bastante";
    } catch (const std::system_error &fallo) { // a thread that could not be had
        return causa(fallo.code().value());
    } catch (const std::exception &) {
        return "fallo interno";
    }
}

} // namespace

int ejecuta(int argc, const char *const *argv) noexcept {
    if (!ocupaLosEstandar())
        return 1;
    try {
        ignoraSenalesDeEscritura();
        std::visit(Orden{}, lee(argc, argv));
        yaNoSeCancela(); // it would be said of something that is done
        return 0;
    } catch (...) {
        // By now everything is unwound: these are the last words.
        yaNoSeCancela();
        diceLinea("Error: " + descripcion());
        return 1;
    }
}

} // namespace orcalin
