#include "indice/rotulo.h"

#include "indice/numeros.h"
#include "indice/rotulo_xz.h"

#include <algorithm>
#include <lzma.h>
#include <string_view>
#include <utility>

namespace orcalin {
namespace {

constexpr std::string_view marca = "OKZindex";
constexpr std::size_t aviso = 8; // of a skippable frame: its magic number and length
constexpr unsigned versiones = 2;
constexpr std::size_t numeros = 6; // version, and those that point to the index

constexpr std::size_t largoTexto(unsigned version) {
    const std::size_t conCrc = marca.size() + (numeros + 1) * sizeof(std::uint64_t);
    return version > 1 ? conCrc + sizeof(Suma) : conCrc;
}

Bloque conCrc(Bloque texto) {
    ponFijo(texto, 0, sizeof(std::uint32_t));
    ponFijo(texto, lzma_crc32(texto.data(), texto.size(), 0), sizeof(std::uint32_t));
    return texto;
}

Bloque comoTexto(const Rotulo &rotulo) {
    Bloque bytes(marca.begin(), marca.end());
    for (const std::uint64_t numero : {std::uint64_t{rotulo.version}, rotulo.lugar, rotulo.largo,
                                       rotulo.crudo, rotulo.entradas, rotulo.tar})
        ponFijo(bytes, numero, sizeof numero);
    if (rotulo.version > 1)
        bytes.insert(bytes.end(), rotulo.suma.begin(), rotulo.suma.end());
    return conCrc(std::move(bytes));
}

std::size_t largoDelMarco(Envase envase, unsigned version) {
    const auto texto = largoTexto(version);
    return envase == Envase::xz ? largoRotuloXz(texto) : aviso + texto;
}

/// How many of a store's last bytes the text and what follows it are.
std::size_t hastaElFinal(Envase envase, unsigned version) {
    return largoDelMarco(envase, version) - (envase == Envase::xz ? lugarEnRotuloXz : aviso);
}

/// The last `cuantos` bytes; none if there are not as many.
std::optional<Bloque> ultimos(const Almacen &almacen, std::size_t cuantos) {
    Bloque bytes(cuantos);
    if (almacen.largo() < cuantos || almacen.lee(almacen.largo() - cuantos, bytes) < cuantos)
        return {};
    return bytes;
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

std::optional<Rotulo> leeDeVersion(const Almacen &almacen, Envase envase, unsigned version) {
    const auto texto = ultimos(almacen, hastaElFinal(envase, version));
    if (!texto || !std::equal(marca.begin(), marca.end(), texto->begin()))
        return {};
    const auto campo = [&texto](std::size_t n) {
        return fijo(Octetos(*texto).subspan(marca.size() + n * sizeof(std::uint64_t)));
    };
    Rotulo rotulo{campo(1), campo(2), campo(3), campo(4), campo(5), version, {}};
    if (version > 1)
        std::copy_n(texto->begin() + marca.size() + numeros * sizeof(std::uint64_t), sizeof(Suma),
                    rotulo.suma.begin());
    const auto bueno = comoTexto(rotulo);
    const auto largo = largoDelMarco(envase, version);
    if (!std::equal(bueno.begin(), bueno.end(), texto->begin()) || almacen.largo() < largo ||
        !cuadra(rotulo, almacen.largo() - largo))
        return {};
    return rotulo;
}

/// Whether the mark or the frame's header of a trailer of that version is there.
bool parece(const Almacen &almacen, Envase envase, unsigned version) {
    Rotulo cualquiera;
    cualquiera.version = version;
    const auto modelo = enMarco(cualquiera, envase);
    const auto hallado = ultimos(almacen, modelo.size());
    if (!hallado)
        return false;
    const auto texto = hallado->end() - static_cast<std::ptrdiff_t>(hastaElFinal(envase, version));
    return std::equal(modelo.begin(), modelo.begin() + aviso, hallado->begin()) ||
           std::equal(marca.begin(), marca.end(), texto);
}

} // namespace

std::vector<unsigned char> enMarco(const Rotulo &rotulo, Envase envase) {
    const auto texto = comoTexto(rotulo);
    if (envase == Envase::xz)
        return rotuloXz(texto);
    auto marco = saltable(texto.size());
    marco.insert(marco.end(), texto.begin(), texto.end());
    return marco;
}

std::optional<Rotulo> leeRotulo(const Almacen &almacen, Envase envase) {
    for (auto version = versiones; version > 0; --version)
        if (auto rotulo = leeDeVersion(almacen, envase, version))
            return rotulo;
    return {};
}

EstadoRotulo estadoDelRotulo(const Almacen &almacen, Envase envase) {
    if (const auto rotulo = leeRotulo(almacen, envase)) {
        const auto bueno = enMarco(*rotulo, envase);
        return ultimos(almacen, bueno.size()) == bueno && avisoSano(almacen, envase, *rotulo)
                   ? EstadoRotulo::sano
                   : EstadoRotulo::danado;
    }
    for (auto version = versiones; version > 0; --version)
        if (parece(almacen, envase, version))
            return EstadoRotulo::danado;
    return EstadoRotulo::noHay;
}

} // namespace orcalin
