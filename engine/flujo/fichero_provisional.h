#pragma once

#include "flujo/flujo.h"
#include "flujo/provisional.h"
#include "flujo/sitio.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace orcalin {

/// The archive while it is being written: a file of its own beside the
/// destination, which takes a name only when it is complete and on the disk.
/// Given up (also by a signal), it is removed, and whatever stood under the
/// destination's name is as it was.
class FicheroProvisional : public Sumidero {
public:
    /// Creates the file, mode by umask, and clears away what dead runs left in
    /// its folder. Throws Fallo if the file cannot be made, or if the destination
    /// will not do (see Sitio).
    explicit FicheroProvisional(std::filesystem::path destino);
    ~FicheroProvisional() override;

    void escribe(Octetos datos) override;

    /// Flushes to the disk. The file keeps its provisional name, but gets the mode,
    /// the access list and, as far as this user may give them, owner and group of
    /// the one that was there before; never to be open to more people than that.
    void cierra() override;

    /// How many bytes were written so far.
    [[nodiscard]] std::uint64_t largo() const { return static_cast<std::uint64_t>(escritos); }

    /// Another descriptor of the file, open for reading. Throws Fallo.
    [[nodiscard]] Descriptor paraLeer() const;

    /// Takes its name, after cierra(): an archive of everything the
    /// destination's, replacing what has it; one that lacks something only if
    /// that is free, and otherwise the first of «nombre (2)», «nombre (3)»…
    /// that is. Returns its path. Cancelling is over from here on. Throws Fallo
    /// when that fails, and if somebody has put another file in the place of ours;
    /// also, the archive complete, when it is not where it was asked for: its folder
    /// has been moved or unmounted meanwhile, or another file has appeared under the
    /// name (or the old one has been written to), which stays.
    std::filesystem::path entrega(bool conTodo);

    /// Whether `nombre` in that open folder, with this status, is the file being
    /// written or the one that it is to replace.
    [[nodiscard]] bool es(int carpeta, const std::string &nombre, const struct stat &estado) const;

    /// The names that it has and is to have, if that is its folder; else none.
    [[nodiscard]] std::vector<std::string> nombresEn(const struct stat &carpeta) const;

private:
    void hereda();
    void empuja();
    [[nodiscard]] bool estaEn(int carpeta, const std::filesystem::path &ruta) const;
    std::string alLado();

    Sitio sitio;
    Provisional fichero;
    struct stat propio {};
    off_t escritos = 0;
    off_t empujados = 0; // those that are on their way to the disk
    bool entregado = false;
};

} // namespace orcalin
