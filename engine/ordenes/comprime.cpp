#include "ordenes/ordenes.h"

#include "cifrado/contrasena.h"
#include "cifrado/sumidero_age.h"
#include "comun/fallo.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "empaque/empaquetador.h"
#include "empaque/relectura.h"

namespace orcalin {
namespace {

/// Where the archive goes.
struct Escritura {
    FicheroProvisional &fichero;
    SumideroAge *cifrado; ///< or null
    bool verifica;        ///< read it back

    [[nodiscard]] Sumidero &abajo() const {
        return cifrado != nullptr ? static_cast<Sumidero &>(*cifrado) : fichero;
    }
};

void escribe(const Escritura &escritura, const Compresion &compresion, const Plan &plan,
             Origenes &origenes, Progreso &progreso, Avisos &avisos) {
    std::optional<Relectura> relectura;
    if (escritura.verifica)
        relectura.emplace(escritura.fichero, escritura.cifrado, compresion.envase);
    SumideroMarcos marcos(escritura.abajo(), compresion, [&](std::uint64_t bytes) {
        if (relectura)
            relectura->sigue(marcos.marcos(), escritura.fichero.largo());
        progreso.avanza(bytes, relectura ? relectura->comparados() : bytes);
    });
    Empaquetador empaquetador(marcos, origenes, escritura.fichero, progreso, avisos);
    for (const auto &pieza : plan)
        empaquetador.guarda(pieza);
    // An archive of nothing must not take the place of an old one of something.
    if (empaquetador.indice().entradas() == 0) {
        avisos.remata("guardar");
        throw Fallo("no hay nada que guardar");
    }
    empaquetador.acaba();
    marcos.acaba();
    const auto final =
        empaquetador.indice().escribe(escritura.abajo(), compresion.envase, marcos.marcos());
    escritura.abajo().cierra();
    if (relectura)
        relectura->acaba(marcos.marcos(), final,
                         [&] { progreso.avanza(marcos.posicion(), relectura->comparados()); });
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
    const auto compresion =
        pedido.maximo ? compresionMaxima(bytesPrevistos(plan)) : compresionHabitual(pedido.nivel);
    escribe({destino, cifrado ? &*cifrado : nullptr, pedido.verifica}, compresion, plan, origenes,
            progreso, avisos);
    // What lacks something must not take the place of what does not.
    const auto donde = destino.entrega(avisos.faltas() == 0);
    progreso.acaba();
    avisos.remata("guardar bien", "; lo demás está en " + citado(donde.string()));
}

} // namespace orcalin
