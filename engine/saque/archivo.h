#pragma once

#include "cifrado/almacen_age.h"
#include "cifrado/contrasena.h"
#include "comun/avisos.h"
#include "flujo/almacen_fichero.h"
#include "indice/indice.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orcalin {

/// An archive open for reading: its encryption is undone here, once.
class Archivo {
public:
    /// Opens `ruta`. If it is encrypted, the key comes from `ficheroContrasena`
    /// now, which takes a while.
    /// Throws Fallo: it cannot be read, is no archive, or the password is
    /// missing or wrong.
    Archivo(const std::filesystem::path &ruta, const FicheroContrasena &ficheroContrasena);

    /// What the archive holds, without its encryption.
    [[nodiscard]] const Almacen &almacen() const;

    /// The file itself, encrypted or not.
    [[nodiscard]] const AlmacenFichero &enElDisco() const { return fichero; }

    /// Its index, at the beginning; null if there is none or it makes no sense.
    /// The archive must outlive it.
    [[nodiscard]] std::unique_ptr<Indice> indice() const;

    /// The same for who is to find damage, with its sum to be compared: null only
    /// if there never was one. Throws Fallo if index or trailer are damaged or
    /// are not where the mark of the stream has them.
    [[nodiscard]] std::unique_ptr<Indice> indiceSano() const;

    /// The tar stream from its beginning, any number of times, read ahead by a
    /// thread. The archive must outlive it.
    [[nodiscard]] std::unique_ptr<Fuente> tar() const;

    /// The same, with the sums that `indice` has of its frames compared: Fallo
    /// where one differs, before anything behind that frame is handed out.
    [[nodiscard]] std::unique_ptr<Fuente> tarComprobado(const Indice &indice) const;

    /// What the frame number `marco` of `indice` alone holds.
    [[nodiscard]] std::unique_ptr<Fuente> marco(const Indice &indice, std::size_t marco) const;

private:
    [[nodiscard]] std::unique_ptr<Indice> indice(bool exige) const;
    [[nodiscard]] bool prometeIndice() const;
    [[nodiscard]] std::unique_ptr<Fuente> abre(std::uint64_t desde, std::uint64_t hasta) const;

    AlmacenFichero fichero;
    std::optional<AlmacenAge> descifrado; // of an encrypted archive
    std::optional<Envase> envase;         // none: the tar stream as it is
};

/// Tells that the archive is read without an index, from beginning to end.
void avisaSinIndice(Avisos &avisos);

} // namespace orcalin
