#include "indice/indice.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/descompresion.h"
#include "flujo/fuente_de_almacen.h"
#include "indice/numeros.h"

#include <algorithm>
#include <string_view>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 64 * kibi;
constexpr std::size_t avisoSaltable = 8;
constexpr std::uint64_t demasMaximo = 255;
// A frame with anything in it is not shorter, and no decoder makes more of a byte.
constexpr std::uint64_t marcoMinimo = 9;
constexpr std::uint64_t razonMaxima = 32 * kibi;

[[noreturn]] void danado() {
    throw Fallo("el índice está dañado");
}

std::unique_ptr<Fuente> abre(const Almacen &almacen, Envase envase, const Rotulo &rotulo) {
    const auto hasta = rotulo.lugar + rotulo.largo;
    const auto aviso = envase == Envase::xz ? 0 : avisoSaltable;
    if (rotulo.largo < aviso)
        danado();
    return descomprime(envase,
                       std::make_unique<FuenteDeAlmacen>(almacen, rotulo.lugar + aviso, hasta));
}

} // namespace

Indice::Indice(const Almacen &almacen, Envase envase, const Rotulo &rotuloDado, bool exige)
    : fuente(abre(almacen, envase, rotuloDado))
    , bloque(largoBloque)
    , rotulo(rotuloDado)
    , faltan(rotulo.entradas) {
    if (exige && rotulo.version > 1)
        sumador.emplace();
    leeMarcos();
}

void Indice::leeMarcos() {
    MarcoSituado marco;
    for (auto n = numero(rotulo.lugar / marcoMinimo); n > 0; --n) {
        situados.push_back(marco);
        const auto empacado = numero(rotulo.lugar - marco.inicio);
        const auto crudo = numero(rotulo.tar - marco.desde);
        marco.inicio += empacado;
        marco.desde += crudo;
        if (crudo == 0 || empacado < marcoMinimo || crudo / razonMaxima > empacado)
            danado();
        if (rotulo.version > 1)
            situados.back().suma = leeSuma();
    }
    final = marco;
    if (situados.empty() || marco.inicio != rotulo.lugar || marco.desde != rotulo.tar)
        danado();
}

Suma Indice::leeSuma() {
    Suma suma{};
    for (auto &uno : suma)
        uno = octeto();
    return suma;
}

std::uint64_t Indice::crudoDe(std::size_t marco) const {
    const auto &siguiente = marco + 1 < situados.size() ? situados[marco + 1] : final;
    return siguiente.desde - situados[marco].desde;
}

std::size_t Indice::marcoDe(std::uint64_t lugar) const {
    const auto tras = std::upper_bound(
        situados.begin(), situados.end(), lugar,
        [](std::uint64_t uno, const MarcoSituado &marco) { return uno < marco.desde; });
    return static_cast<std::size_t>(tras - situados.begin()) - 1;
}

bool Indice::siguiente(Asiento &asiento) {
    if (faltan == 0) {
        acaba();
        return false;
    }
    --faltan;
    const auto previsto = lugarTras(asiento);
    const auto igual = numero(asiento.ruta.size());
    const auto resto = numero(rutaMaxima - igual);
    const bool crece = igual == asiento.ruta.size();
    const auto primera = crece ? '\0' : asiento.ruta[igual];
    asiento.ruta.resize(igual);
    while (asiento.ruta.size() < igual + resto) {
        if (pendiente.empty() && !repone())
            danado();
        const auto parte = pendiente.first(
            std::min<std::size_t>(pendiente.size(), igual + resto - asiento.ruta.size()));
        asiento.ruta.append(reinterpret_cast<const char *>(parte.data()), parte.size());
        pendiente = pendiente.subspan(parte.size());
    }
    const bool asciende = resto > 0 && (crece || static_cast<unsigned char>(asiento.ruta[igual]) >
                                                     static_cast<unsigned char>(primera));
    asiento.tipo = static_cast<char>(octeto());
    if (!asciende || std::string_view("-dlh").find(asiento.tipo) == std::string_view::npos)
        danado();
    const bool conMas = leePermisos(asiento);
    asiento.bytes = numero(ficheroMaximo);
    asiento.lugar = previsto + static_cast<std::uint64_t>(deZigzag(numero(UINT64_MAX)));
    if (asiento.lugar >= rotulo.tar || !cabe(asiento))
        danado();
    asiento.enlazado = asiento.tipo == 'h' ? numero(rotulo.tar - 1) : 0;
    for (auto demas = conMas ? numero(demasMaximo) : 0; demas > 0; --demas)
        octeto();
    return true;
}

/// Whether the stream has room for the headers of this one, too, of which one is
/// a block at least, and one with a long path has that in it: a list is no longer
/// than the stream, however much of their paths entries share.
bool Indice::cabe(const Asiento &asiento) {
    constexpr std::uint64_t bloqueDeTar = 512;
    constexpr std::size_t corta = 256;
    ocupado += bloqueDeTar + (asiento.ruta.size() > corta ? asiento.ruta.size() : 0);
    return ocupado <= rotulo.tar;
}

/// True if something follows that is not for us.
bool Indice::leePermisos(Asiento &asiento) {
    constexpr unsigned marcas = marcaIncompleta | marcaConMas;
    const auto todo = numero(rotulo.version > 1 ? permisosMaximos | marcas : permisosMaximos);
    asiento.permisos = static_cast<unsigned>(todo & permisosMaximos);
    asiento.incompleta = (todo & marcaIncompleta) != 0;
    return (todo & marcaConMas) != 0;
}

void Indice::acaba() {
    if (!pendiente.empty() || repone())
        danado();
    if (sumador && sumador->acaba() != rotulo.suma)
        danado();
    sumador.reset();
}

std::uint64_t Indice::numero(std::uint64_t maximo) {
    constexpr unsigned bits = 7;
    constexpr unsigned sigue = 0x80;
    std::uint64_t valor = 0;
    for (unsigned lugar = 0; lugar < 64; lugar += bits) {
        const std::uint64_t parte = octeto();
        const std::uint64_t cifra = parte & (sigue - 1);
        if (cifra << lugar >> lugar != cifra)
            danado();
        valor |= cifra << lugar;
        if (parte < sigue) {
            if (valor > maximo)
                danado();
            return valor;
        }
    }
    danado();
}

unsigned char Indice::octeto() {
    if (pendiente.empty() && !repone())
        danado();
    const auto uno = pendiente.front();
    pendiente = pendiente.subspan(1);
    return uno;
}

bool Indice::repone() {
    pendiente = Octetos(bloque).first(fuente->lee(bloque));
    if (sumador)
        sumador->anade(pendiente);
    return !pendiente.empty();
}

} // namespace orcalin
