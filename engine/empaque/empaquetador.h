#pragma once

#include "comun/avisos.h"
#include "empaque/progreso.h"
#include "empaque/recorrido.h"
#include "empaque/regiones.h"
#include "flujo/descriptor.h"
#include "tar/escritor_tar.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orcalin {

/// Puts pieces from the disk into a tar stream. A piece that cannot be read
/// goes to `avisos`, and the next one has its turn.
class Empaquetador {
public:
    /// All three must outlive this. Throws std::bad_alloc.
    Empaquetador(EscritorTar &tar, Progreso &progreso, Avisos &avisos);

    /// Throws Fallo only when the archive itself cannot be written.
    void guarda(const Pieza &pieza);

    /// How many entries there are in the stream.
    [[nodiscard]] std::size_t guardadas() const { return cuantas; }

private:
    using Inodo = std::pair<dev_t, ino_t>;

    void intenta(const Pieza &pieza);
    [[nodiscard]] Ficha ficha(const Pieza &pieza, int fd, const struct stat &estado) const;
    void guardaContenido(const Pieza &pieza, int fd, const std::vector<Region> &regiones);
    bool guardaRegion(const Pieza &pieza, int fd, Region region);
    void guardaHueco(const Pieza &pieza, std::int64_t bytes);
    void comparaConAntes(const Pieza &pieza, int fd, const struct stat &antes);
    void falta(const Pieza &pieza, const std::string &porque);

    EscritorTar &tar;
    Progreso &progreso;
    Avisos &avisos;
    AsaLectura disco;
    std::map<Inodo, std::string> primerosNombres; // of files with several
    std::vector<unsigned char> bloque;
    std::size_t cuantas = 0;
};

} // namespace orcalin
