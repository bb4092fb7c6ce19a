#include "indice/rotulo.h"

#include "indice/numeros.h"
#include "indice/rotulo_xz.h"

#include <algorithm>
#include <array>
#include <lzma.h>
#include <string_view>

namespace orcalin {
namespace {

constexpr std::string_view marca = "OKZindex";
constexpr std::uint64_t version = 1;
constexpr std::size_t aviso = 8; // of a skippable frame: its magic number and length

using Texto = std::array<unsigned char, largoRotulo>;

std::uint32_t suma(const Texto &texto) {
    return lzma_crc32(texto.data(), texto.size() - sizeof(std::uint32_t), 0);
}

Texto comoTexto(const Rotulo &rotulo) {
    std::vector<unsigned char> bytes(marca.begin(), marca.end());
    for (const auto numero : {version, rotulo.lugar, rotulo.largo, rotulo.crudo, rotulo.entradas,
                              rotulo.tar, std::uint64_t{0}})
        ponFijo(bytes, numero, sizeof numero);
    Texto texto{};
    std::copy(bytes.begin(), bytes.end(), texto.begin());
    bytes.clear();
    ponFijo(bytes, suma(texto), sizeof(std::uint32_t));
    std::copy(bytes.begin(), bytes.end(), texto.end() - sizeof(std::uint32_t));
    return texto;
}

std::size_t bytesTras(Envase envase) {
    return envase == Envase::xz ? largoRotuloXz - lugarEnRotuloXz - largoRotulo : 0;
}

std::size_t largoDelMarco(Envase envase) {
    return envase == Envase::xz ? largoRotuloXz : aviso + largoRotulo;
}

bool cuadra(const Rotulo &rotulo, std::uint64_t hasta) {
    return rotulo.lugar < hasta && rotulo.largo == hasta - rotulo.lugar && rotulo.tar > 0;
}

/// Whether the index frame is announced as it should be, where that is done.
bool avisoSano(const Almacen &almacen, Envase envase, const Rotulo &rotulo) {
    if (envase == Envase::xz)
        return true;
    const auto bueno = saltable(rotulo.largo - aviso);
    std::vector<unsigned char> hallado(aviso);
    return almacen.lee(rotulo.lugar, hallado) == aviso && hallado == bueno;
}

} // namespace

std::vector<unsigned char> enMarco(const Rotulo &rotulo, Envase envase) {
    const Texto texto = comoTexto(rotulo);
    if (envase == Envase::xz)
        return rotuloXz(texto);
    auto marco = saltable(texto.size());
    marco.insert(marco.end(), texto.begin(), texto.end());
    return marco;
}

std::optional<Rotulo> leeRotulo(const Almacen &almacen, Envase envase) {
    const std::size_t marco = largoDelMarco(envase);
    if (almacen.largo() < marco)
        return {};
    Texto texto{};
    const auto desde = almacen.largo() - bytesTras(envase) - texto.size();
    if (almacen.lee(desde, texto) < texto.size() ||
        !std::equal(marca.begin(), marca.end(), texto.begin()))
        return {};
    const auto campo = [&texto](std::size_t n) {
        return fijo(Octetos(texto).subspan(marca.size() + n * sizeof(std::uint64_t)));
    };
    if (campo(0) != version || static_cast<std::uint32_t>(campo(6) >> 32U) != suma(texto))
        return {};
    const Rotulo rotulo{campo(1), campo(2), campo(3), campo(4), campo(5)};
    if (!cuadra(rotulo, almacen.largo() - marco))
        return {};
    return rotulo;
}

EstadoRotulo estadoDelRotulo(const Almacen &almacen, Envase envase) {
    const auto rotulo = leeRotulo(almacen, envase);
    const auto bueno = enMarco(rotulo.value_or(Rotulo{}), envase);
    std::vector<unsigned char> hallado(bueno.size());
    if (almacen.largo() < bueno.size() ||
        almacen.lee(almacen.largo() - bueno.size(), hallado) < hallado.size())
        return EstadoRotulo::noHay;
    if (rotulo)
        return hallado == bueno && avisoSano(almacen, envase, *rotulo) ? EstadoRotulo::sano
                                                                       : EstadoRotulo::danado;
    const auto texto = hallado.end() - static_cast<std::ptrdiff_t>(bytesTras(envase) + largoRotulo);
    const bool parece = std::equal(bueno.begin(), bueno.begin() + aviso, hallado.begin()) ||
                        std::equal(marca.begin(), marca.end(), texto);
    return parece ? EstadoRotulo::danado : EstadoRotulo::noHay;
}

} // namespace orcalin
