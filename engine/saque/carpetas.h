#pragma once

#include "saque/atributos.h"
#include "saque/carpeta.h"
#include "saque/forzadas.h"
#include "saque/hermanos.h"
#include "saque/sacados.h"

#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <unordered_map>
#include <unordered_set>

namespace orcalin {

/// The folders below the destination, reached component by component and never
/// through a symbolic link, the latest ones kept open. Since everything is
/// written relative to these, nobody can lead it elsewhere by putting a link in
/// the place of a folder meanwhile.
///
/// Paths are the archive's. Where the user has something that is no folder in
/// the place of one, the folder has a number behind its name, and everything
/// below it is there.
class Carpetas {
public:
    /// `destino` is open. Folders that are nowhere described get `permisos`.
    /// With `reemplaza`, what is in the way of a folder gives way to it.
    /// `sacados` must outlive this.
    Carpetas(Descriptor destino, mode_t permisos, bool reemplaza, Sacados &sacados);

    /// The folder `ruta`, normalised and without `..`, empty for the destination
    /// itself; made if it is missing, and cleared of what dead runs left in it.
    /// Throws FalloDeEntrada.
    CarpetaAbierta abre(std::string_view ruta);

    /// The same for the entry itself, which has something to say of the folder.
    /// Throws FalloDeEntrada.
    void describe(const std::string &ruta, Atributos atributos);

    /// That the folder `ruta` is to have these permissions, if this run made it
    /// and nothing else describes it.
    void permite(const std::string &ruta, mode_t permisos);

    /// Whether this run made the folder `ruta`.
    [[nodiscard]] bool esNuestra(const std::string &ruta) const { return porAcabar.contains(ruta); }

    /// The numbers in use beside `nombre` (see Hermanos).
    const std::set<unsigned> &numeros(const CarpetaAbierta &carpeta, const std::string &nombre) {
        return hermanos.numeros(carpeta, nombre, false);
    }

    /// That `ruta` is no longer the folder it was.
    void olvida(const std::string &ruta);

    /// Gives folders their modes and times, which wait for their contents: until
    /// then those that this run made are for nobody else. One that is described
    /// nowhere stays so if not all was read (`leido`), since it might be told to,
    /// and goes if nothing came into it. False if one lacks something that this
    /// user may give.
    bool acaba(bool leido);

private:
    struct Guardada {
        CarpetaAbierta carpeta;
        std::list<std::string>::iterator turno;
    };

    void cambia(const std::string &ruta);
    CarpetaAbierta guardada(std::string_view ruta);
    CarpetaAbierta baja(const CarpetaAbierta &desde, std::string_view ruta);
    Descriptor aparta(const CarpetaAbierta &desde, const std::string &ruta, bool &nueva);
    Descriptor conNumero(const CarpetaAbierta &desde, const std::string &ruta, unsigned numero,
                         bool creando, bool &nueva);
    void cierra(std::string_view ruta);
    CarpetaAbierta guarda(std::string_view ruta, Descriptor fd, bool nueva);
    Descriptor abrePaso(Descriptor fd, std::string_view ruta);
    CarpetaAbierta mira(Descriptor fd, bool nueva);
    bool ponSinDescribir(const std::string &ruta, bool leido);

    mode_t permisos;
    bool reemplaza;
    Sacados &sacados;
    Hermanos hermanos;
    std::size_t abiertasALaVez;
    std::list<std::string> turnos;                             // the latest first
    std::unordered_map<std::string_view, Guardada> abiertas;   // the keys are in `turnos`
    std::map<std::string, std::optional<Atributos>> porAcabar; // without: described nowhere
    std::unordered_set<ino_t> repasadas; // those where nothing of a dead run is left
    CarpetaAbierta raiz;                 // not among those that give way to others
    Forzadas forzadas;
};

} // namespace orcalin
