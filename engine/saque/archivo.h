#pragma once

#include "cifrado/almacen_age.h"
#include "flujo/almacen_fichero.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orcalin {

/// An archive open for reading: its encryption is undone here, once.
class Archivo {
public:
    /// Opens `ruta`. If it is encrypted, the password is in the file
    /// `ficheroContrasena`, and the key is derived now, which takes a while.
    /// Throws Fallo: it cannot be read, is no archive, or the password is
    /// missing or wrong.
    Archivo(const std::filesystem::path &ruta, const std::string &ficheroContrasena);

    /// What the archive holds, without its encryption.
    [[nodiscard]] const Almacen &almacen() const;

    /// The file itself, encrypted or not.
    [[nodiscard]] const AlmacenFichero &enElDisco() const { return fichero; }

    /// The tar stream from its beginning, any number of times. The archive must
    /// outlive it.
    [[nodiscard]] std::unique_ptr<Fuente> tar() const;

private:
    AlmacenFichero fichero;
    std::optional<AlmacenAge> descifrado; // of an encrypted archive
};

} // namespace orcalin
