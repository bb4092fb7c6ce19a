#pragma once

#include "cifrado/secreto.h"
#include "flujo/descriptor.h"
#include "flujo/flujo.h"

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

    /// The tar stream from its beginning, any number of times. The archive must
    /// outlive it.
    [[nodiscard]] std::unique_ptr<Fuente> tar() const;

private:
    void reconoce(const std::string &ficheroContrasena);

    Descriptor fd;
    std::optional<Secreto> claveFichero; // of an encrypted archive
    off_t carga = 0;                     // where what the key opens begins
};

} // namespace orcalin
