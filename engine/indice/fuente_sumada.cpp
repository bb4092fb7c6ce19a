#include "indice/fuente_sumada.h"

#include "comun/fallo.h"

#include <algorithm>
#include <utility>

namespace orcalin {

FuenteSumada::FuenteSumada(std::unique_ptr<Fuente> tarDado, const Indice &indiceDado)
    : tar(std::move(tarDado))
    , indice(indiceDado)
    , faltan(indice.crudoDe(0)) {}

std::size_t FuenteSumada::lee(Hueco hueco) {
    if (marco == indice.marcos().size())
        return tar->lee(hueco);
    const auto leidos = tar->lee(hueco.first(std::min<std::uint64_t>(hueco.size(), faltan)));
    if (leidos == 0)
        throw Fallo("el archivo está incompleto");
    sumador.anade(hueco.first(leidos));
    faltan -= leidos;
    if (faltan == 0)
        acabaMarco();
    return leidos;
}

void FuenteSumada::acabaMarco() {
    const auto suma = sumador.acaba();
    const auto &buena = indice.marcos()[marco].suma;
    if (buena && *buena != suma)
        throw Fallo("el archivo está dañado");
    if (++marco < indice.marcos().size())
        faltan = indice.crudoDe(marco);
}

} // namespace orcalin
