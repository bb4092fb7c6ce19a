#pragma once

#include "comun/senales.h"
#include "saque/carpeta.h"

#include <mutex>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace orcalin {

/// The user's own folders that had to be opened to their owner first. They get
/// their permissions back on every way out, a cancel among them.
class Forzadas {
public:
    /// Paths are those on the disk below `destino`.
    explicit Forzadas(CarpetaAbierta destino);
    Forzadas(const Forzadas &) = delete;
    Forzadas &operator=(const Forzadas &) = delete;
    ~Forzadas();

    /// Opens the folder `ruta`, which is open as `fd` and has `permisos`, to this
    /// user alone. Throws FalloDeEntrada.
    void abre(int fd, std::string ruta, mode_t permisos);

    /// That the folder `ruta` has been given others.
    void olvida(const std::string &ruta);

    /// False if one did not get them.
    bool devuelve();

private:
    bool devuelveTodas();

    CarpetaAbierta raiz;
    std::mutex cerrojo;                                // what is opened is on the list
    std::vector<std::pair<std::string, mode_t>> lista; // outer ones before inner ones
    AlCancelar remedio;                                // last: it uses all the others
};

} // namespace orcalin
