#include "saque/en_camino.h"

#include "comun/senales.h"
#include "flujo/provisional.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <utility>

namespace orcalin {

EnCamino::EnCamino(CarpetaAbierta carpeta, std::string nombreDado)
    : madre(std::move(carpeta))
    , nombre(std::move(nombreDado)) {}

EnCamino::~EnCamino() {
    if (!llegado)
        unlinkat(madre->fd.numero(), nombre.c_str(), 0);
    sueltaEfimero();
}

bool EnCamino::llega(const std::string &definitivo) {
    const int carpeta = madre->fd.numero();
    bool eraCarpeta = false;
    const auto renombra = [&] {
        return renameat(carpeta, nombre.c_str(), carpeta, definitivo.c_str()) == 0;
    };
    if (nombre != definitivo && !renombra()) {
        eraCarpeta = errno == EISDIR;
        if (!eraCarpeta || unlinkat(carpeta, definitivo.c_str(), AT_REMOVEDIR) != 0 || !renombra())
            fallaEntrada(errno);
    }
    llegado = true;
    return eraCarpeta;
}

FicheroNuevo::FicheroNuevo(const CarpetaAbierta &carpeta, std::string nombreDado, mode_t permisos,
                           bool deUnaVez)
    : nombre(std::move(nombreDado)) {
    const int madre = carpeta->fd.numero();
    if (deUnaVez)
        fd = Descriptor(creaEfimero(madre, nombre.c_str(), O_WRONLY | O_CLOEXEC, permisos));
    if (fd.valido()) {
        camino.emplace(carpeta, nombre);
        return;
    }
    if (deUnaVez && errno != EEXIST)
        fallaEntrada(errno);
    Provisional nuevo = creaProvisional(madre, permisos);
    if (!nuevo.fd.valido())
        fallaEntrada(errno);
    fd = std::move(nuevo.fd);
    camino.emplace(carpeta, std::move(nuevo.nombre));
}

void FicheroNuevo::escribe(std::int64_t desde, Octetos datos) {
    while (!datos.empty()) {
        const ssize_t cuantos = pwrite(fd.numero(), datos.data(), datos.size(), desde);
        if (cuantos < 0 && errno != EINTR)
            fallaEntrada(errno);
        if (cuantos > 0) {
            datos = datos.subspan(static_cast<std::size_t>(cuantos));
            desde += cuantos;
        }
    }
    final = std::max(final, desde);
}

void FicheroNuevo::alarga(std::int64_t bytes) {
    if (final < bytes && ftruncate(fd.numero(), bytes) != 0)
        fallaEntrada(errno);
}

} // namespace orcalin
