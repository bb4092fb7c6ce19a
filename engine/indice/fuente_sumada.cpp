#include "indice/fuente_sumada.h"

#include "comun/fallo.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orcalin {

FuenteSumada::FuenteSumada(AbreMarco abreDado, const Indice &indiceDado)
    : abre(std::move(abreDado))
    , indice(indiceDado) {}

std::size_t FuenteSumada::lee(Hueco hueco) {
    if (marco == indice.marcos().size())
        return 0;
    if (!tar) {
        tar = abre(marco);
        faltan = indice.crudoDe(marco);
    }
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
    std::array<unsigned char, 1> sobra{};
    const auto suma = sumador.acaba();
    const auto &buena = indice.marcos()[marco].suma;
    if ((buena && *buena != suma) || tar->lee(sobra) > 0)
        throw Fallo("el archivo está dañado");
    tar.reset();
    ++marco;
}

} // namespace orcalin
