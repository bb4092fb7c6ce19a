#include "empaque/relectura.h"

#include "cifrado/almacen_age.h"
#include "cifrado/cabecera_age.h"
#include "comun/fallo.h"
#include "comun/medidas.h"
#include "flujo/almacen_directo.h"
#include "flujo/descompresion.h"
#include "flujo/fuente_de_almacen.h"
#include "indice/indice.h"

#include <algorithm>
#include <limits>
#include <lzma.h>

namespace orcalin {
namespace {

constexpr std::chrono::milliseconds plazo{100};
constexpr std::size_t largoBloque = 256 * kibi;

/// A file that goes on growing: whoever reads it must know how far it goes.
class AlmacenSinFin : public Almacen {
public:
    explicit AlmacenSinFin(const Almacen &ficheroDado)
        : fichero(ficheroDado) {}
    [[nodiscard]] std::uint64_t largo() const override {
        return std::numeric_limits<std::int64_t>::max();
    }
    std::size_t lee(std::uint64_t desde, Hueco hueco) const override {
        return fichero.lee(desde, hueco);
    }

private:
    const Almacen &fichero;
};

/// Whether the frame that ends at `fin` of the payload is safely in a file of
/// `escritos` bytes: with the chunk of an encrypted one that it ends in, and far
/// enough from the end that the system has begun to put it on the disk.
bool estaYa(std::uint64_t fin, std::uint64_t escritos) {
    constexpr std::uint64_t holgura = 8 * mebi;
    constexpr std::uint64_t sobrecoste = 4096; // of the encryption: one in so many
    return fin + fin / sobrecoste + holgura <= escritos;
}

[[noreturn]] void difiere() {
    throw Fallo("lo guardado no se lee igual que lo leído");
}

/// A stretch of a store, with its CRC64.
class FuenteConCrc : public Fuente {
public:
    FuenteConCrc(const Almacen &almacen, std::uint64_t desde, std::uint64_t hasta,
                 std::uint64_t &crcDado)
        : fuente(almacen, desde, hasta)
        , crc(crcDado) {}
    std::size_t lee(Hueco hueco) override {
        const auto leidos = fuente.lee(hueco);
        crc = lzma_crc64(hueco.data(), leidos, crc);
        return leidos;
    }

private:
    FuenteDeAlmacen fuente;
    std::uint64_t &crc;
};

/// Every bit of the frame counts, and so does what it decompresses to.
bool seLeeIgual(const Almacen &claro, Envase envase, std::uint64_t inicio, const Marco &marco) {
    std::uint64_t crc = 0;
    const auto tar = descomprime(
        envase, std::make_unique<FuenteConCrc>(claro, inicio, inicio + marco.empacado, crc));
    return seLeeComo(*tar, marco.crudo, marco.suma) && crc == marco.crc;
}

/// What a file holds, without its encryption.
class Carga {
public:
    /// The same as long as it is asked for the same file.
    const Almacen &de(const Almacen &fichero, const SumideroAge *cifrado) {
        if (cifrado != nullptr && cual != &fichero)
            claro.emplace(fichero, cifrado->cabecera().size(), cifrado->claveDelFichero());
        cual = &fichero;
        return claro ? static_cast<const Almacen &>(*claro) : fichero;
    }

private:
    const Almacen *cual = nullptr;
    std::optional<AlmacenAge> claro;
};

/// What the encryption has put before its payload, and what that needs.
void comparaCabecera(const Almacen &disco, const SumideroAge &cifrado) {
    const std::string &buena = cifrado.cabecera();
    std::string hallada(buena.size(), '\0');
    disco.lee(0, {reinterpret_cast<unsigned char *>(hallada.data()), hallada.size()});
    if (hallada != buena || !CabeceraAge::lee(hallada).esSuClave(cifrado.claveDelFichero()))
        difiere();
}

} // namespace

Relectura::Relectura(const FicheroProvisional &ficheroDado, const SumideroAge *cifradoDado,
                     Envase envaseDado)
    : cifrado(cifradoDado)
    , envase(envaseDado)
    , fichero(ficheroDado.paraLeer())
    , hilo([this] { trabaja(); }) {}

Relectura::~Relectura() {
    const std::lock_guard guarda(cerrojo);
    abandonada = true;
    cambio.notify_all();
}

void Relectura::sigue(const std::vector<Marco> &marcos, std::uint64_t escritosAhora) {
    const std::lock_guard guarda(cerrojo);
    escritos = escritosAhora;
    anade(marcos);
    relanza();
}

void Relectura::acaba(const std::vector<Marco> &marcos, const IndiceNuevo::Final &finalEscrito,
                      const std::function<void()> &latido) {
    std::unique_lock guarda(cerrojo);
    final = finalEscrito;
    anade(marcos);
    while (!cambio.wait_for(guarda, plazo, [this] { return acabada; })) {
        guarda.unlock();
        latido();
        guarda.lock();
    }
    relanza();
}

void Relectura::anade(const std::vector<Marco> &marcos) {
    for (; conocidos < marcos.size(); ++conocidos)
        pendientes.push_back(marcos[conocidos]);
    cambio.notify_all();
}

void Relectura::relanza() {
    if (fallo)
        std::rethrow_exception(fallo);
}

void Relectura::trabaja() {
    std::exception_ptr ultimo;
    try {
        compara();
    } catch (...) {
        ultimo = std::current_exception();
    }
    const std::lock_guard guarda(cerrojo);
    fallo = ultimo;
    acabada = true;
    cambio.notify_all();
}

/// Waits for a frame that is there; false if none comes any more.
bool Relectura::toma(Marco &marco, bool &completo) {
    std::unique_lock guarda(cerrojo);
    const auto hay = [this] {
        return !pendientes.empty() &&
               (final || estaYa(repartidos + pendientes.front().empacado, escritos));
    };
    cambio.wait(guarda, [&] { return abandonada || final || hay(); });
    if (abandonada || !hay())
        return false;
    completo = final.has_value();
    marco = pendientes.front();
    pendientes.pop_front();
    repartidos += marco.empacado;
    return true;
}

void Relectura::compara() {
    try {
        const AlmacenDirecto disco(std::move(fichero));
        comparaMarcos(disco);
        if (!abandonada)
            comparaElFinal(disco);
    } catch (const Fallo &) {
        difiere();
    }
}

void Relectura::comparaMarcos(const Almacen &disco) {
    const AlmacenSinFin creciente(disco);
    Carga carga;
    std::uint64_t inicio = 0;
    bool completo = false;
    for (Marco marco; toma(marco, completo); inicio += marco.empacado) {
        const auto &claro = carga.de(completo ? disco : creciente, cifrado);
        if (!seLeeIgual(claro, envase, inicio, marco))
            difiere();
        cuenta += marco.crudo;
    }
}

/// Index and trailer, and that nothing else is in the file.
void Relectura::comparaElFinal(const Almacen &disco) {
    if (cifrado != nullptr)
        comparaCabecera(disco, *cifrado);
    Carga carga;
    const auto &claro = carga.de(disco, cifrado);
    const auto &rotulo = final->rotulo;
    std::uint64_t crc = 0;
    FuenteConCrc fuente(claro, rotulo.lugar, claro.largo(), crc);
    for (Bloque bloque(largoBloque); fuente.lee(bloque) > 0;) {
    }
    if (crc != final->crc || leeRotulo(claro, envase) != rotulo)
        difiere();
    Indice indice(claro, envase, rotulo, true);
    for (Asiento asiento; indice.siguiente(asiento);) {
    }
}

} // namespace orcalin
