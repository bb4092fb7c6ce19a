#pragma once

#include "empaque/cosa.h"
#include "empaque/regiones.h"
#include "tar/escritor_tar.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orcalin {

/// What a regular file holds, on its way into a tar stream.
class Contenido {
public:
    /// Finds out where there is content in an open file, which must outlive
    /// this. What a file holds that claims to be empty, as those of /proc do, or
    /// to hold more than it does, as those of /sys, is read at once: its length must be known
    /// before. Throws std::bad_alloc, or std::system_error when the process lacks something.
    explicit Contenido(const Cosa &fichero);

    /// Why it cannot be packed at all; empty if it can.
    [[nodiscard]] const std::string &impedimento() const { return porque; }

    /// For the header: how long it is, and where it has holes.
    [[nodiscard]] std::uint64_t largo() const { return bytes; }
    void anotaHuecos(archive_entry *ficha) const;

    /// How much of it is no hole.
    [[nodiscard]] std::uint64_t sinHuecos() const;

    /// Writes it. Returns what was wrong with it, empty if nothing: what could
    /// not be read is zeros then. Throws what `tar` throws, and std::system_error.
    std::string guarda(EscritorTar &tar);

private:
    [[nodiscard]] bool diceDeMas() const;
    void leeEntero();
    void guardaRegion(EscritorTar &tar, Region region);

    const Cosa &cosa;
    std::uint64_t bytes = 0;
    std::vector<Region> regiones;
    std::vector<unsigned char> leido; // of one that does not tell its length
    std::string porque;
};

} // namespace orcalin
