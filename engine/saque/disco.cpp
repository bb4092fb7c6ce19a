#include "saque/disco.h"

#include "comun/medidas.h"
#include "comun/numerado.h"
#include "indice/asiento.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

constexpr mode_t deCarpeta = 0777;
// Up to here a file is put together in memory before anything of it is written.
constexpr std::int64_t pequeno = mebi;

/// All of a small file; none if it is not small, or has holes. `primero` is its
/// first piece, `memoria` for what comes in several.
std::optional<Octetos> entero(LectorTar &lector, archive_entry *ficha, Octetos primero,
                              std::int64_t desde, Bloque &memoria) {
    const std::int64_t bytes = archive_entry_size(ficha);
    if (desde == 0 && static_cast<std::int64_t>(primero.size()) == bytes)
        return primero;
    if (bytes > pequeno || archive_entry_sparse_count(ficha) > 0)
        return std::nullopt;
    memoria.assign(static_cast<std::size_t>(bytes), 0);
    for (Octetos trozo = primero; !trozo.empty(); trozo = lector.trozo(desde))
        if (desde >= 0 && static_cast<std::uint64_t>(desde) + trozo.size() <= memoria.size())
            std::copy(trozo.begin(), trozo.end(), memoria.begin() + desde);
    return memoria;
}

} // namespace

Disco::Disco(Descriptor destino, bool reemplazaDado)
    : mascara(umask(0))
    , reemplaza(reemplazaDado)
    , cuentas(archive_write_disk_new())
    , carpetas(std::move(destino), deCarpeta & ~mascara, reemplaza, hechos) {
    if (!cuentas)
        throw std::bad_alloc();
    archive_write_disk_set_standard_lookup(cuentas.get());
}

Disco::~Disco() {
    umask(mascara);
}

void Disco::saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
                 const std::string &como) {
    faltaAlgo = false;
    if (!quedaDentro(como))
        throw FalloDeEntrada("su ruta sale de la carpeta de destino");
    if (entrada.tipo == '-')
        return sacaFichero(lector, ficha, como);
    if (entrada.tipo == 'd')
        return carpetas.describe(como, leeAtributos(ficha, cuentas.get()));
    if (entrada.tipo == 'l')
        return sacaEnlace(ficha, como);
    throw FalloDeEntrada("no es un fichero ni una carpeta");
}

void Disco::enlaza(const std::string &ruta, const std::string &enlace) {
    faltaAlgo = false;
    const auto fichero = lugar(enlace);
    NuevoNombre nuevo(lugar(ruta).carpeta, fichero.carpeta, fichero.nombre);
    coloca(nuevo, ruta, Sacados::Que::fichero);
}

void Disco::permite(const std::string &ruta, mode_t permisos) {
    carpetas.permite(ruta, permisos & deCarpeta & ~mascara);
}

void Disco::acaba(bool leido) {
    faltaAlgo = !carpetas.acaba(leido);
}

void Disco::vuelca() const {
    if (hechos.algoNuevo() && !carpetas.vuelca())
        fallaDisco("no se puede sacar", errno);
}

Disco::Lugar Disco::lugar(const std::string &ruta) {
    if (!quedaDentro(ruta))
        throw FalloDeEntrada("su ruta sale de la carpeta de destino");
    return {carpetas.abre(madreDe(ruta)), hechos.nombre(ruta)};
}

void Disco::sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como) {
    if (archive_entry_size(ficha) > ficheroMaximo)
        fallaEntrada(EFBIG);
    if (lector.empezada())
        throw FalloDeEntrada("su contenido se quedó con el primero de sus nombres");
    const auto carpeta = carpetas.abre(madreDe(como));
    const Atributos atributos = leeAtributos(ficha, cuentas.get());
    std::int64_t desde = 0;
    Octetos trozo = lector.trozo(desde);
    if (const auto todo = entero(lector, ficha, trozo, desde, contenido)) {
        NuevoEnMemoria nuevo(carpeta, *todo, atributos);
        return coloca(nuevo, como, Sacados::Que::fichero);
    }
    NuevoEscrito nuevo(carpeta, atributos);
    for (; !trozo.empty(); trozo = lector.trozo(desde))
        nuevo.contenido().escribe(desde, trozo);
    nuevo.contenido().alarga(archive_entry_size(ficha));
    nuevo.completa();
    coloca(nuevo, como, Sacados::Que::fichero);
}

void Disco::sacaEnlace(archive_entry *ficha, const std::string &como) {
    const Atributos atributos = leeAtributos(ficha, cuentas.get());
    const char *destino = archive_entry_symlink(ficha);
    if (destino == nullptr)
        throw FalloDeEntrada("no dice a qué enlaza");
    NuevoEnlace nuevo(carpetas.abre(madreDe(como)), destino, atributos);
    coloca(nuevo, como, Sacados::Que::enlace);
}

void Disco::coloca(Nuevo &nuevo, const std::string &como, Sacados::Que que) {
    std::string nombre = hechos.nombre(como);
    bool escrito = nombre == nombreDe(como) && nuevo.aparece(nombre);
    if (!escrito && (hechos.esNuestro(como) || carpetas.esNuestra(como)))
        return cambia(nuevo, como, que);
    if (!escrito && reemplaza) {
        nuevo.ocupa(nombre);
        carpetas.olvida(como);
        escrito = true;
    } else if (!escrito) {
        nombre = nombreDe(como);
        const auto hallado = igual(nuevo, nombre, "");
        escrito = hallado.empty();
        nombre = escrito ? conNumero(nuevo, nombre, escrito) : hallado;
    }
    faltaAlgo = escrito && nuevo.faltaAlgo();
    hechos.anota(como, que, nombre, escrito);
}

/// In the place of what this run put there itself.
void Disco::cambia(Nuevo &nuevo, const std::string &como, Sacados::Que que) {
    const auto nuestro = hechos.nombre(como);
    const std::string nombre(nombreDe(como));
    const bool enSuSitio = nuestro == nombre || carpetas.esNuestra(como);
    const auto hallado = enSuSitio ? "" : igual(nuevo, nombre, nuestro);
    if (hallado.empty()) {
        nuevo.ocupa(nuestro);
        faltaAlgo = nuevo.faltaAlgo();
    } else {
        // That was made only because the earlier entry was not there yet.
        unlinkat(nuevo.donde()->fd.numero(), nuestro.c_str(), 0);
    }
    carpetas.olvida(como);
    hechos.olvida(como);
    hechos.anota(como, que, hallado.empty() ? nuestro : hallado, hallado.empty());
}

/// The name, its own or one with a number, under which there is the same
/// already; empty if there is none.
std::string Disco::igual(const Nuevo &nuevo, const std::string &nombre, const std::string &salvo) {
    if (nuevo.esComo(nombre))
        return nombre;
    for (const auto numero : carpetas.numeros(nuevo.donde(), nombre))
        if (const auto otro = numerado(nombre, numero, false); otro != salvo && nuevo.esComo(otro))
            return otro;
    return "";
}

/// The name with a number under which it stands now; it may be that somebody has
/// just put the same there.
std::string Disco::conNumero(Nuevo &nuevo, const std::string &nombre, bool &escrito) {
    const auto &usados = carpetas.numeros(nuevo.donde(), nombre);
    for (unsigned numero = 2;; ++numero) {
        if (usados.contains(numero))
            continue;
        auto otro = numerado(nombre, numero, false);
        escrito = nuevo.aparece(otro);
        if (escrito || nuevo.esComo(otro))
            return otro;
    }
}

} // namespace orcalin
