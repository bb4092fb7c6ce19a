#pragma once

#include "flujo/flujo.h"
#include "saque/carpeta.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orcalin {

/// Something in a folder that has not come to stay yet: gone with whatever
/// prevents its arrival, a cancel among that.
class EnCamino {
public:
    /// `nombre` has been made known as ephemeral (see senales.h).
    EnCamino(CarpetaAbierta carpeta, std::string nombre);
    EnCamino(const EnCamino &) = delete;
    EnCamino &operator=(const EnCamino &) = delete;
    ~EnCamino();

    /// It stays under the name that it has.
    void queda() { llegado = true; }

    /// It stays as `definitivo` if that is free; false otherwise. Throws
    /// FalloDeEntrada.
    bool quedaSiCabe(const std::string &definitivo);

    /// It stays as `definitivo` and takes the place of what is called so; of a
    /// folder only if that is empty. Throws FalloDeEntrada.
    void ocupa(const std::string &definitivo);

private:
    CarpetaAbierta madre;
    std::string nombre;
    bool llegado = false;
};

/// A regular file while its content arrives: without a name where the system
/// knows that, so that its folder does not change if it comes to nothing.
class FicheroNuevo {
public:
    /// Makes it, to stand in `carpeta`. Throws FalloDeEntrada or Fallo, as the
    /// others do.
    FicheroNuevo(CarpetaAbierta carpeta, mode_t permisos);

    /// Open for reading, too.
    [[nodiscard]] int descriptor() const { return fd.numero(); }

    /// Where nothing is written there will be a hole.
    void escribe(std::int64_t desde, Octetos datos);

    /// Makes it `bytes` long, whatever of that was written.
    void alarga(std::int64_t bytes);

    /// It is complete and stands as `nombre` if that is free; false otherwise.
    bool aparece(const std::string &nombre);

    /// It is complete and takes the place of `nombre` (see EnCamino::ocupa()).
    void ocupa(const std::string &nombre);

private:
    bool enlaza(const std::string &nombre);

    CarpetaAbierta carpeta;
    Descriptor fd;
    std::optional<EnCamino> camino; // of one that has a name
    std::int64_t final = 0;         // of what was written
};

/// Takes the place of `nombre`, which is no folder, by an empty folder for this
/// user alone, in one step where the disk can do that. Throws FalloDeEntrada.
void ponCarpetaEnLugarDe(const CarpetaAbierta &carpeta, const std::string &nombre);

} // namespace orcalin
