#pragma once

#include "flujo/flujo.h"
#include "flujo/provisional.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace orcalin {

/// The archive while it is being written: a file of its own beside the
/// destination, which takes the destination's name only when it is complete
/// and on the disk. Given up (also by a signal), it is removed, and whatever
/// stood under the destination's name is as it was.
class FicheroProvisional : public Sumidero {
public:
    /// Creates the file, mode by umask, and clears away what dead runs left in
    /// its folder. A destination that is a symbolic link stands for what it
    /// points to. Throws Fallo if the file cannot be made, or if the
    /// destination exists and is no regular file.
    explicit FicheroProvisional(std::filesystem::path destino);
    ~FicheroProvisional() override;

    void escribe(Octetos datos) override;

    /// Flushes to the disk. The file keeps its provisional name.
    void cierra() override;

    /// How many bytes were written so far.
    [[nodiscard]] std::uint64_t largo() const { return static_cast<std::uint64_t>(escritos); }

    /// Another descriptor of the file, open for reading. Throws Fallo.
    [[nodiscard]] Descriptor paraLeer() const;

    /// Takes the destination's name, replacing what has it; after cierra().
    /// Cancelling is over from here on. Throws Fallo when that fails, and also,
    /// the archive complete, when its folder has been moved or unmounted
    /// meanwhile: it is not where it was asked for.
    void entrega();

    /// Whether `nombre` in a folder, with this status, is the file being
    /// written or the one that it will replace.
    [[nodiscard]] bool es(const std::string &nombre, const struct stat &estado) const;

private:
    void empuja();

    std::filesystem::path destino; // links resolved
    std::string nombre;            // the destination's, in its folder
    Descriptor carpeta;
    Provisional fichero;
    struct stat propio {};
    struct stat anterior {}; // st_nlink 0: there was none
    off_t escritos = 0;
    off_t empujados = 0; // those that are on their way to the disk
    bool entregado = false;
};

} // namespace orcalin
