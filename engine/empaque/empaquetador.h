#pragma once

#include "comun/avisos.h"
#include "empaque/identidad.h"
#include "empaque/progreso.h"
#include "empaque/recorrido.h"
#include "empaque/regiones.h"
#include "flujo/descriptor.h"
#include "flujo/sumidero_marcos.h"
#include "indice/indice_nuevo.h"
#include "tar/escritor_tar.h"

#include <map>
#include <string>
#include <vector>

namespace orcalin {

/// Puts pieces from the disk into a tar stream, and an entry for each into the
/// index. A piece that cannot be read goes to `avisos`, and the next one has
/// its turn.
class Empaquetador {
public:
    /// Writes to `marcos`, which nobody else may do meanwhile. All must outlive
    /// this. Throws std::bad_alloc or Fallo.
    Empaquetador(SumideroMarcos &marcos, Progreso &progreso, Avisos &avisos);

    /// Throws Fallo only when the archive itself cannot be written, or no file
    /// can be read any more.
    void guarda(const Pieza &pieza);

    /// Ends the tar stream.
    void acaba();

    /// Of what is in the stream so far.
    [[nodiscard]] IndiceNuevo &indice() { return asientos; }

private:
    /// Where in the archive a file's content is.
    struct Primero {
        std::string nombre;
        std::uint64_t lugar = 0;
        std::uint64_t bytes = 0;
        bool incompleta = false;
    };

    void intenta(const Pieza &pieza);
    [[nodiscard]] Ficha ficha(const Pieza &pieza, int fd, const struct stat &estado) const;
    [[nodiscard]] const Primero *primero(const Pieza &pieza, const struct stat &estado) const;
    bool guardaContenido(const Pieza &pieza, int fd, const struct stat &estado,
                         const std::vector<Region> &regiones);
    bool guardaRegiones(const Pieza &pieza, int fd, const std::vector<Region> &regiones);
    bool guardaRegion(const Pieza &pieza, int fd, Region region);
    void guardaHueco(std::int64_t bytes);
    void anota(const Pieza &pieza, const struct stat &estado, std::uint64_t lugar, bool incompleta);
    void falta(const Pieza &pieza, int porque);
    void falta(const Pieza &pieza, const std::string &porque);

    SumideroMarcos &marcos;
    EscritorTar tar;
    Progreso &progreso;
    Avisos &avisos;
    AsaLectura disco;
    std::map<Identidad, Primero> primeros; // of files with several names
    std::vector<unsigned char> bloque;
    IndiceNuevo asientos;
};

} // namespace orcalin
