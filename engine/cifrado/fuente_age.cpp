#include "cifrado/fuente_age.h"

#include "comun/fallo.h"

#include <algorithm>
#include <utility>

namespace orcalin {

FuenteAge::FuenteAge(std::unique_ptr<Fuente> cargaDada, const Secreto &claveFichero)
    : carga(std::move(cargaDada))
    , sellado(trozoSellado)
    , claro(trozoClaro) {
    std::array<unsigned char, largoNonceAge> nonce{};
    if (llena(*carga, nonce) < nonce.size())
        throw Fallo("el archivo está incompleto");
    sello.emplace(claveFichero, nonce);
}

std::size_t FuenteAge::lee(Hueco hueco) {
    while (pendiente.empty() && !terminado)
        abreOtro();
    const auto parte = pendiente.first(std::min(pendiente.size(), hueco.size()));
    std::copy(parte.begin(), parte.end(), hueco.begin());
    pendiente = pendiente.subspan(parte.size());
    return parte.size();
}

void FuenteAge::abreOtro() {
    const auto trozo = Octetos(sellado).first(llena(*carga, sellado));
    if (trozo.size() < crypto_aead_chacha20poly1305_ietf_ABYTES)
        throw Fallo("el archivo está incompleto");
    const std::size_t largo = trozo.size() - crypto_aead_chacha20poly1305_ietf_ABYTES;
    // A full chunk may be the last one, too; a short one can be nothing else.
    const bool lleno = trozo.size() == trozoSellado;
    if (!lleno || !sello->abre(trozo, numero, false, claro)) {
        if (!sello->abre(trozo, numero, true, claro))
            throw Fallo("el archivo está dañado");
        terminado = true;
    }
    std::array<unsigned char, 1> sobrante{};
    if (terminado && ((largo == 0 && numero > 0) || carga->lee(sobrante) > 0))
        throw Fallo("el archivo está dañado");
    ++numero;
    pendiente = Octetos(claro).first(largo);
}

} // namespace orcalin
