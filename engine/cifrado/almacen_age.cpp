#include "cifrado/almacen_age.h"

#include "comun/fallo.h"

#include <algorithm>
#include <vector>

namespace orcalin {
namespace {

constexpr std::size_t largoMarca = crypto_aead_chacha20poly1305_ietf_ABYTES;

[[noreturn]] void danado() {
    throw Fallo("el archivo está dañado");
}

[[noreturn]] void incompleto() {
    throw Fallo("el archivo está incompleto");
}

SelloAge selloDe(const Almacen &abajo, std::uint64_t desde, const Secreto &claveFichero) {
    std::array<unsigned char, largoNonceAge> nonce{};
    if (abajo.lee(desde, nonce) < nonce.size() || abajo.largo() == desde + nonce.size())
        incompleto();
    return {claveFichero, nonce};
}

/// Room for one chunk, made once a thread.
Hueco borrador() {
    thread_local std::vector<unsigned char> memoria(trozoSellado);
    return memoria;
}

} // namespace

AlmacenAge::AlmacenAge(const Almacen &abajoDado, std::uint64_t desde, const Secreto &claveFichero)
    : abajo(abajoDado)
    , sello(selloDe(abajo, desde, claveFichero))
    , inicio(desde + largoNonceAge)
    , sellados(abajo.largo() - inicio)
    , ultimo((sellados - 1) / trozoSellado)
    , claros(ultimo * trozoClaro + clarosDe(ultimo)) {}

std::size_t AlmacenAge::lee(std::uint64_t desde, Hueco hueco) const {
    std::size_t total = 0;
    while (total < hueco.size() && desde + total < claros)
        total += leeTrozo(desde + total, hueco.subspan(total));
    // A last chunk without content is in nobody's way: look at it all the same.
    if (clarosDe(ultimo) == 0 && desde + total >= claros)
        abre(ultimo, borrador(), borrador());
    return total;
}

std::size_t AlmacenAge::leeTrozo(std::uint64_t desde, Hueco hueco) const {
    const std::uint64_t numero = desde / trozoClaro;
    const std::size_t salto = desde % trozoClaro;
    const std::size_t largo = clarosDe(numero);
    if (salto == 0 && hueco.size() >= largo) {
        // Where the seal fits, too, the chunk is opened in place.
        abre(numero, hueco.size() >= largo + largoMarca ? hueco : borrador(), hueco);
        return largo;
    }
    abre(numero, borrador(), borrador());
    const auto parte = borrador().subspan(salto, std::min(largo - salto, hueco.size()));
    std::copy(parte.begin(), parte.end(), hueco.begin());
    return parte.size();
}

void AlmacenAge::abre(std::uint64_t numero, Hueco sellado, Hueco claro) const {
    if (!seAbre(numero, numero == ultimo, sellado, claro)) {
        if (numero < ultimo)
            danado();
        cuentaElFinal();
    }
    if (numero > 0 && clarosDe(numero) == 0)
        danado();
}

bool AlmacenAge::seAbre(std::uint64_t numero, bool comoUltimo, Hueco sellado, Hueco claro) const {
    const auto trozo = sellado.first(selladosDe(numero));
    return abajo.lee(inicio + numero * trozoSellado, trozo) == trozo.size() &&
           sello.abre(trozo, numero, comoUltimo, claro);
}

/// Why the last chunk does not open as such.
void AlmacenAge::cuentaElFinal() const {
    std::vector<unsigned char> memoria(trozoSellado);
    const std::size_t largo = selladosDe(ultimo);
    if (largo == trozoSellado && seAbre(ultimo, false, memoria, memoria))
        incompleto();
    if (largo == trozoSellado || (ultimo > 0 && seAbre(ultimo - 1, true, memoria, memoria)))
        danado();
    if (largo <= largoMarca)
        incompleto();
    throw Fallo("el archivo está incompleto o dañado");
}

std::size_t AlmacenAge::selladosDe(std::uint64_t numero) const {
    return numero < ultimo ? trozoSellado : sellados - ultimo * trozoSellado;
}

std::size_t AlmacenAge::clarosDe(std::uint64_t numero) const {
    const std::size_t largo = selladosDe(numero);
    return largo < largoMarca ? 0 : largo - largoMarca;
}

} // namespace orcalin
