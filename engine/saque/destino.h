#pragma once

#include "comun/senales.h"
#include "flujo/descriptor.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace orcalin {

/// The folder in which what comes out is left. What of it had to be made goes
/// again if nothing came into it.
class Destino {
public:
    explicit Destino(std::filesystem::path rutaDada)
        : ruta(std::move(rutaDada)) {}
    Destino(const Destino &) = delete;
    Destino &operator=(const Destino &) = delete;
    ~Destino();

    /// Opens it, made with the folders above it if it is missing; links on the
    /// way to it are the user's business. Throws Fallo.
    Descriptor abre();

private:
    void retira() const;

    std::filesystem::path ruta;
    std::vector<std::filesystem::path> hechas; // inner ones first
    std::optional<AlCancelar> remedio;
};

} // namespace orcalin
