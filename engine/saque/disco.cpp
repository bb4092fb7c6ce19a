#include "saque/disco.h"

#include "comun/senales.h"
#include "flujo/provisional.h"
#include "saque/en_camino.h"
#include "saque/fallo_de_entrada.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

constexpr mode_t soloMio = 0600;
constexpr mode_t deCarpeta = 0777;

} // namespace

Disco::Disco()
    : mascara(umask(0))
    , cuentas(archive_write_disk_new())
    , carpetas(deCarpeta & ~mascara) {
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
    if (entrada.tipo == '-')
        return sacaFichero(lector, ficha, como);
    if (entrada.tipo == 'd')
        return sacaCarpeta(ficha, como);
    if (entrada.tipo == 'l')
        return sacaEnlace(ficha, como);
    throw FalloDeEntrada("no es un fichero ni una carpeta");
}

void Disco::enlaza(archive_entry * /*ficha*/, const std::string &ruta, const std::string &enlace) {
    faltaAlgo = false;
    const Lugar fichero = lugar(enlace);
    pon(
        ruta,
        [&](int carpeta, const char *nombre) {
            return linkat(fichero.carpeta->fd.numero(), fichero.nombre.c_str(), carpeta, nombre, 0);
        },
        [](int, const std::string &) {});
}

void Disco::acaba() {
    faltaAlgo = false;
    for (const auto &[ruta, permisos] : carpetas.forzadas()) {
        Atributos deAntes;
        deAntes.permisos = permisos;
        porAcabar.try_emplace(ruta, deAntes);
    }
    // Inner folders first.
    for (auto i = porAcabar.rbegin(); i != porAcabar.rend(); ++i) {
        try {
            const auto carpeta = carpetas.abre(i->first);
            faltaAlgo = !ponAtributos(carpeta->fd.numero(), i->second, false) || faltaAlgo;
        } catch (const FalloDeEntrada &) {
            faltaAlgo = true;
        }
    }
    porAcabar.clear();
}

Disco::Lugar Disco::lugar(const std::string &ruta) {
    if (!quedaDentro(ruta))
        throw FalloDeEntrada("su ruta sale de la carpeta de destino");
    return {carpetas.abre(madreDe(ruta)), std::string(nombreDe(ruta))};
}

void Disco::sacaCarpeta(archive_entry *ficha, const std::string &como) {
    const Lugar sitio = lugar(como);
    const int madre = sitio.carpeta->fd.numero();
    struct stat estado {};
    if (!carpetas.crea(como)) {
        if (fstatat(madre, sitio.nombre.c_str(), &estado, AT_SYMLINK_NOFOLLOW) != 0)
            fallaEntrada(errno);
        if (S_ISDIR(estado.st_mode))
            carpetas.abre(como);
        else if (unlinkat(madre, sitio.nombre.c_str(), 0) != 0 || !carpetas.crea(como))
            fallaEntrada(errno);
    }
    porAcabar.insert_or_assign(como, leeAtributos(ficha, cuentas.get()));
}

void Disco::sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como) {
    if (lector.empezada())
        throw FalloDeEntrada("su contenido se quedó con el primero de sus nombres");
    const Lugar sitio = lugar(como);
    const Atributos atributos = leeAtributos(ficha, cuentas.get());
    const bool sencillo = atributos.bastaConCrear() && !sitio.carpeta->hereda;
    const std::int64_t bytes = archive_entry_size(ficha);
    std::int64_t desde = 0;
    Octetos trozo = lector.trozo(desde);
    const bool deUnaVez = desde == 0 && static_cast<std::int64_t>(trozo.size()) == bytes;
    FicheroNuevo fichero(sitio.carpeta, sitio.nombre, sencillo ? atributos.permisos : soloMio,
                         deUnaVez);
    for (; !trozo.empty(); trozo = lector.trozo(desde))
        fichero.escribe(desde, trozo);
    fichero.alarga(bytes);
    faltaAlgo = !ponAtributos(fichero.descriptor(), atributos, sencillo);
    if (fichero.llega())
        yaNoEsCarpeta(como);
}

void Disco::sacaEnlace(archive_entry *ficha, const std::string &como) {
    const Atributos atributos = leeAtributos(ficha, cuentas.get());
    const char *destino = archive_entry_symlink(ficha);
    if (destino == nullptr)
        throw FalloDeEntrada("no dice a qué enlaza");
    pon(
        como, [&](int carpeta, const char *nombre) { return symlinkat(destino, carpeta, nombre); },
        [&](int carpeta, const std::string &nombre) {
            faltaAlgo = !ponAtributosAlEnlace(carpeta, nombre, atributos);
        });
}

/// What appears in one step may do so under its own name if that is free.
template<typename Crea, typename Prepara>
void Disco::pon(const std::string &como, const Crea &crea, const Prepara &prepara) {
    const Lugar sitio = lugar(como);
    const int madre = sitio.carpeta->fd.numero();
    if (crea(madre, sitio.nombre.c_str()) == 0)
        return prepara(madre, sitio.nombre);
    if (errno != EEXIST)
        fallaEntrada(errno);
    const std::string provisional = nombreProvisional();
    anunciaEfimero(madre, provisional);
    EnCamino camino(sitio.carpeta, provisional);
    if (crea(madre, provisional.c_str()) != 0)
        fallaEntrada(errno);
    prepara(madre, provisional);
    if (camino.llega(sitio.nombre))
        yaNoEsCarpeta(como);
    // Between two names of one file a rename does nothing.
    unlinkat(madre, provisional.c_str(), 0);
}

void Disco::yaNoEsCarpeta(const std::string &ruta) {
    carpetas.olvida(ruta);
    porAcabar.erase(ruta);
}

} // namespace orcalin
