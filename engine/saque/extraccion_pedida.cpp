#include "saque/extraccion.h"
#include "saque/marcos.h"

#include <algorithm>

namespace orcalin {
namespace {

constexpr const char *deOtro = "el índice no es de este archivo";

} // namespace

void Extraccion::cumple(const Indice &indice) {
    const auto &encargos = mapa->encargos();
    deCamino = mapa->carpetas();
    Marcos marcos(archivo, indice, mapa->marcosPedidos(indice));
    std::optional<LectorTar> lector;
    std::uint64_t origen = 0; // of what `lector` reads
    for (auto i = encargos.begin(); i != encargos.end();) {
        try {
            // Reading on is worth it only as far as the frame goes.
            if (!lector || indice.marcoDe(i->first) > marcos.actual()) {
                origen = i->first;
                lector.emplace(marcos.desde(origen));
            }
            cumpleUno(*lector, origen, *i);
            ++i;
        } catch (const MarcoDanado &danado) {
            lector.reset();
            const auto &marco = indice.marcos()[danado.marco];
            for (; i != encargos.end() && i->first < marco.desde + indice.crudoDe(danado.marco);
                 ++i)
                std::for_each(i->second.comos.begin(), i->second.comos.end(),
                              [this](const auto &como) { danada(como); });
        }
    }
    algo = !encargos.empty();
}

void Extraccion::cumpleUno(LectorTar &lector, std::uint64_t origen,
                           const Encargos::value_type &encargo) {
    const auto &[lugar, pedido] = encargo;
    archive_entry *ficha = nullptr;
    do
        ficha = lector.siguiente();
    while (ficha != nullptr && origen + lector.posicion() < lugar);
    if (ficha == nullptr || origen + lector.posicion() > lugar)
        throw Fallo(deOtro);
    const Entrada entrada = describe(ficha);
    if (pedido.conElla ? entrada.ruta != pedido.comos.front() : entrada.tipo != '-')
        throw Fallo(deOtro);
    saca(lector, ficha, entrada, pedido.comos);
}

} // namespace orcalin
