#pragma once

#include "flujo/descriptor.h"

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orcalin {

/// A folder below the destination, open.
struct Carpeta {
    Descriptor fd;
    bool hereda = false; ///< what is made in it gets its group or its access list
};

using CarpetaAbierta = std::shared_ptr<const Carpeta>;

/// The folders below the destination, reached component by component and never
/// through a symbolic link, the latest ones kept open. Since everything is
/// written relative to these, nobody can lead it elsewhere by putting a link in
/// the place of a folder meanwhile.
class Carpetas {
public:
    /// The destination is the current folder. Folders that are nowhere
    /// described are made with `permisos`. Throws Fallo if it cannot be opened.
    explicit Carpetas(mode_t permisos);

    /// The folder `ruta`, normalised and without `..`, empty for the destination
    /// itself; made if it is missing, and cleared of what dead runs left in it.
    /// Throws FalloDeEntrada.
    CarpetaAbierta abre(std::string_view ruta);

    /// Makes the folder `ruta`, for nobody but this user. False if there is
    /// something of that name. Throws FalloDeEntrada.
    bool crea(std::string_view ruta);

    /// The user's own folders that had to be opened to their owner first, each
    /// with the mode that it is to have again.
    [[nodiscard]] const std::vector<std::pair<std::string, mode_t>> &forzadas() const {
        return aLaFuerza;
    }

    /// That `ruta` is no longer the folder it was.
    void olvida(std::string_view ruta);

private:
    struct Guardada {
        CarpetaAbierta carpeta;
        std::list<std::string>::iterator turno;
    };

    CarpetaAbierta guardada(std::string_view ruta);
    CarpetaAbierta baja(const Carpeta &desde, std::string_view ruta);
    CarpetaAbierta guarda(std::string_view ruta, Descriptor fd, bool nueva);
    CarpetaAbierta describe(Descriptor fd, std::string_view ruta, bool nueva);

    mode_t permisos;
    std::size_t abiertasALaVez;
    CarpetaAbierta raiz;           // not among those that give way to others
    std::list<std::string> turnos; // the latest first
    std::unordered_map<std::string_view, Guardada> abiertas; // the keys are in `turnos`
    std::vector<std::pair<std::string, mode_t>> aLaFuerza;
    std::unordered_set<ino_t> repasadas; // those where nothing of a dead run is left
};

/// `ruta` up to its last slash, and what is behind that.
std::string_view madreDe(std::string_view ruta);
std::string_view nombreDe(std::string_view ruta);

} // namespace orcalin
