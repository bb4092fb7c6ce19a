#include "ordenes/ordenes.h"

#include "cifrado/contrasena.h"
#include "cifrado/sumidero_age.h"
#include "comun/fallo.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "empaque/empaquetador.h"

namespace orcalin {
namespace {

void escribe(Sumidero &abajo, const Compresion &compresion, const Plan &plan, Origenes &origenes,
             Progreso &progreso, Avisos &avisos) {
    SumideroMarcos marcos(abajo, compresion,
                          [&progreso](std::uint64_t bytes) { progreso.avanza(bytes); });
    Empaquetador empaquetador(marcos, origenes, progreso, avisos);
    for (const auto &pieza : plan)
        empaquetador.guarda(pieza);
    // An archive of nothing must not take the place of an old one of something.
    if (empaquetador.indice().entradas() == 0) {
        avisos.remata("guardar");
        throw Fallo("no hay nada que guardar");
    }
    empaquetador.acaba();
    marcos.acaba();
    empaquetador.indice().escribe(abajo, compresion.envase, marcos.marcos());
    abajo.cierra();
}

} // namespace

void comprime(const PedidoComprimir &pedido) {
    atiendeCancelacion("guardado cancelado");
    std::optional<Secreto> contrasena;
    if (pedido.cifra)
        contrasena = leeContrasena(pedido.ficheroContrasena);
    FicheroProvisional destino(pedido.destino);
    Avisos avisos;
    Origenes origenes;
    const Plan plan = planea(pedido.origenes, destino, origenes, avisos);
    Progreso progreso(pedido.progreso, plan);
    std::optional<SumideroAge> cifrado;
    if (contrasena) {
        progreso.derivaClave();
        cifrado.emplace(destino, std::move(*contrasena), pedido.factor);
    }
    Sumidero *abajo = &destino;
    if (cifrado)
        abajo = &*cifrado;
    const auto compresion =
        pedido.maximo ? compresionMaxima(bytesPrevistos(plan)) : compresionHabitual(pedido.nivel);
    escribe(*abajo, compresion, plan, origenes, progreso, avisos);
    // What lacks something must not take the place of what does not.
    const auto donde = destino.entrega(avisos.faltas() == 0);
    progreso.acaba();
    avisos.remata("guardar bien", "; lo demás está en " + citado(donde.string()));
}

} // namespace orcalin
