#include "ordenes/ordenes.h"

#include "cifrado/contrasena.h"
#include "cifrado/sumidero_age.h"
#include "comun/fallo.h"
#include "comun/senales.h"
#include "empaque/empaquetador.h"
#include "flujo/sumidero_zstd.h"

namespace orcalin {
namespace {

std::uint64_t bytesDe(const Plan &plan) {
    // A header each and their rounding: near enough for choosing a window.
    constexpr std::uint64_t porPieza = 2048;
    std::uint64_t total = 0;
    for (const auto &pieza : plan)
        total += pieza.bytes + porPieza;
    return total;
}

void escribe(Sumidero &abajo, const AjustesZstd &ajustes, const Plan &plan, Progreso &progreso,
             Avisos &avisos) {
    SumideroZstd marcos(abajo, ajustes);
    EscritorTar tar(marcos);
    Empaquetador empaquetador(tar, progreso, avisos);
    for (const auto &pieza : plan)
        empaquetador.guarda(pieza);
    // An archive of nothing must not take the place of an old one of something.
    if (empaquetador.guardadas() == 0) {
        avisos.remata("guardar");
        throw Fallo("no hay nada que guardar");
    }
    tar.cierra();
}

} // namespace

void comprime(const PedidoComprimir &pedido) {
    atiendeCancelacion("guardado cancelado");
    std::optional<Secreto> contrasena;
    if (pedido.cifra)
        contrasena = leeContrasena(pedido.ficheroContrasena);
    FicheroProvisional destino(pedido.destino);
    Avisos avisos;
    const Plan plan = planea(pedido.origenes, destino, avisos);
    Progreso progreso(pedido.progreso, plan);
    std::optional<SumideroAge> cifrado;
    if (contrasena) {
        progreso.derivaClave();
        cifrado.emplace(destino, *contrasena, pedido.factor);
        contrasena.reset();
    }
    Sumidero *abajo = &destino;
    if (cifrado)
        abajo = &*cifrado;
    const auto ajustes =
        pedido.maximo ? ajustesMaximos(bytesDe(plan)) : ajustesDeNivel(pedido.nivel);
    escribe(*abajo, ajustes, plan, progreso, avisos);
    progreso.acaba();
    avisos.remata("guardar bien");
}

} // namespace orcalin
