#include "saque/nuevo.h"

#include "comun/medidas.h"
#include "comun/senales.h"
#include "flujo/provisional.h"
#include "saque/fallo_de_entrada.h"
#include "saque/iguales.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orcalin {
namespace {

constexpr mode_t soloMio = 0600;
constexpr std::size_t largoBloque = 256 * kibi;

void escribe(int fd, Octetos datos) {
    while (!datos.empty()) {
        const ssize_t cuantos = write(fd, datos.data(), datos.size());
        if (cuantos < 0 && errno != EINTR)
            fallaEntrada(errno);
        if (cuantos > 0)
            datos = datos.subspan(static_cast<std::size_t>(cuantos));
    }
}

bool bastaConCrear(const Atributos &atributos, const CarpetaAbierta &carpeta) {
    return atributos.bastaConCrear() && !carpeta->hereda;
}

/// Another file system, one without hard links or a file with too many; what
/// the system says of files of others.
bool noSeEnlaza(int numero) {
    return numero == EXDEV || numero == EMLINK || numero == EPERM || numero == EOPNOTSUPP ||
           numero == ENOSYS;
}

/// What a call that must not replace anything has brought.
bool apareceSi(int resultado) {
    if (resultado != 0 && errno != EEXIST)
        fallaEntrada(errno);
    return resultado == 0;
}

} // namespace

void Nuevo::ocupa(const std::string &nombre) {
    const std::string provisional = nombreProvisional();
    anunciaEfimero(madre(), provisional);
    EnCamino camino(carpeta, provisional);
    if (!aparece(provisional))
        fallaEntrada(EEXIST);
    camino.ocupa(nombre);
}

NuevoEnMemoria::NuevoEnMemoria(CarpetaAbierta carpetaDada, Octetos contenidoDado,
                               const Atributos &atributosDados)
    : Nuevo(std::move(carpetaDada))
    , contenido(contenidoDado)
    , atributos(atributosDados)
    , sencillo(bastaConCrear(atributos, carpeta)) {}

bool NuevoEnMemoria::aparece(const std::string &nombre) {
    const Descriptor fd(creaEfimero(madre(), nombre.c_str(), O_WRONLY | O_CLOEXEC,
                                    sencillo ? atributos.permisos : soloMio));
    if (!apareceSi(fd.valido() ? 0 : -1))
        return false;
    EnCamino camino(carpeta, nombre);
    escribe(fd.numero(), contenido);
    falta = !ponAtributos(fd.numero(), atributos, sencillo);
    camino.queda();
    return true;
}

bool NuevoEnMemoria::esComo(const std::string &nombre) const {
    return esFicheroCon(madre(), nombre, contenido);
}

void NuevoEnMemoria::ocupa(const std::string &nombre) {
    NuevoEscrito aparte(carpeta, atributos);
    aparte.contenido().escribe(0, contenido);
    aparte.completa();
    falta = aparte.faltaAlgo();
    aparte.ocupa(nombre);
}

NuevoEscrito::NuevoEscrito(CarpetaAbierta carpetaDada, const Atributos &atributosDados)
    : Nuevo(std::move(carpetaDada))
    , atributos(atributosDados)
    , sencillo(bastaConCrear(atributos, carpeta))
    , fichero(carpeta, sencillo ? atributos.permisos : soloMio) {}

void NuevoEscrito::completa() {
    falta = !ponAtributos(fichero.descriptor(), atributos, sencillo);
}

bool NuevoEscrito::aparece(const std::string &nombre) {
    return fichero.aparece(nombre);
}

bool NuevoEscrito::esComo(const std::string &nombre) const {
    return esFicheroComo(madre(), nombre, fichero.descriptor());
}

void NuevoEscrito::ocupa(const std::string &nombre) {
    fichero.ocupa(nombre);
}

NuevoEnlace::NuevoEnlace(CarpetaAbierta carpetaDada, std::string destinoDado,
                         const Atributos &atributosDados)
    : Nuevo(std::move(carpetaDada))
    , destino(std::move(destinoDado))
    , atributos(atributosDados) {}

bool NuevoEnlace::aparece(const std::string &nombre) {
    if (!apareceSi(symlinkat(destino.c_str(), madre(), nombre.c_str())))
        return false;
    falta = !ponAtributosAlEnlace(madre(), nombre, atributos);
    return true;
}

bool NuevoEnlace::esComo(const std::string &nombre) const {
    return esEnlaceA(madre(), nombre, destino);
}

NuevoNombre::NuevoNombre(CarpetaAbierta carpetaDada, CarpetaAbierta otraDada, std::string nombre)
    : Nuevo(std::move(carpetaDada))
    , otra(std::move(otraDada))
    , deAntes(std::move(nombre)) {}

bool NuevoNombre::aparece(const std::string &nombre) {
    if (fichero)
        return fichero->aparece(nombre);
    if (linkat(otra->fd.numero(), deAntes.c_str(), madre(), nombre.c_str(), 0) == 0)
        return true;
    if (!noSeEnlaza(errno))
        return apareceSi(-1);
    copia();
    return fichero->aparece(nombre);
}

bool NuevoNombre::esComo(const std::string &nombre) const {
    const auto fd = abre();
    return fd.valido() && esFicheroComo(madre(), nombre, fd.numero());
}

Descriptor NuevoNombre::abre() const {
    return Descriptor(openat(otra->fd.numero(), deAntes.c_str(),
                             O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

void NuevoNombre::copia() {
    const auto fd = abre();
    struct stat estado {};
    if (!fd.valido() || fstat(fd.numero(), &estado) != 0)
        fallaEntrada(errno);
    fichero.emplace(carpeta, soloMio);
    Bloque bloque(largoBloque);
    for (off_t desde = trasElHueco(fd.numero(), 0, estado.st_size); desde < estado.st_size;
         desde = trasElHueco(fd.numero(), desde, estado.st_size)) {
        const ssize_t leidos = pread(fd.numero(), bloque.data(), bloque.size(), desde);
        if (leidos < 0 && errno != EINTR)
            fallaEntrada(errno);
        if (leidos == 0)
            break;
        if (leidos > 0) {
            fichero->escribe(desde, Octetos(bloque).first(static_cast<std::size_t>(leidos)));
            desde += leidos;
        }
    }
    fichero->alarga(estado.st_size);
    falta = !ponAtributos(fichero->descriptor(), atributosDe(fd.numero(), estado), false);
}

} // namespace orcalin
