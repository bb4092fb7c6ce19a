#pragma once

#include "flujo/descriptor.h"
#include "flujo/flujo.h"

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
    /// Creates the file, mode by umask. A destination that is a symbolic link
    /// stands for what it points to. Throws Fallo if the file cannot be made,
    /// or if the destination exists and is no regular file.
    explicit FicheroProvisional(std::filesystem::path destino);
    ~FicheroProvisional() override;

    void escribe(Octetos datos) override;

    /// Flushes to the disk and takes the destination's name, replacing what has
    /// it. Cancelling is over from here on.
    void cierra() override;

    /// Whether `nombre` in a folder, with this status, is the file being
    /// written or the one that it will replace.
    [[nodiscard]] bool es(const std::string &nombre, const struct stat &estado) const;

private:
    std::filesystem::path destino;
    std::filesystem::path ruta;
    Descriptor fd;
    struct stat propio {};
    struct stat anterior {}; // st_nlink 0: there was none
    bool entregado = false;
};

/// A path in the same folder as `junto` for a file on its way to that name.
/// Short whatever the length of the name, hidden, and not used by anyone.
std::filesystem::path rutaProvisional(const std::filesystem::path &junto);

} // namespace orcalin
