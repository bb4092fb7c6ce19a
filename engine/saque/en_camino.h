#pragma once

#include "flujo/descriptor.h"
#include "flujo/flujo.h"
#include "saque/carpetas.h"

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

    /// It stays, as `definitivo`, and takes the place of whatever else is called
    /// so; of a folder only if that is empty. Returns whether it was a folder.
    /// Throws FalloDeEntrada.
    bool llega(const std::string &definitivo);

private:
    CarpetaAbierta madre;
    std::string nombre;
    bool llegado = false;
};

/// A regular file while its content arrives.
class FicheroNuevo {
public:
    /// Makes it in `carpeta`. With `deUnaVez`, all its content is at hand, and it
    /// gets its name at once if that is free: a provisional one would cost more
    /// than the content. Throws FalloDeEntrada or Fallo, as the others do.
    FicheroNuevo(const CarpetaAbierta &carpeta, std::string nombre, mode_t permisos, bool deUnaVez);

    [[nodiscard]] int descriptor() const { return fd.numero(); }

    /// Where nothing is written there will be a hole.
    void escribe(std::int64_t desde, Octetos datos);

    /// Makes it `bytes` long, whatever of that was written.
    void alarga(std::int64_t bytes);

    /// It is complete. Returns whether an empty folder gave way to it.
    bool llega() { return camino->llega(nombre); }

private:
    std::string nombre;
    Descriptor fd;
    std::optional<EnCamino> camino;
    std::int64_t final = 0; // of what was written
};

} // namespace orcalin
