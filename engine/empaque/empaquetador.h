#pragma once

#include "comun/avisos.h"
#include "empaque/contenido.h"
#include "empaque/extendidos.h"
#include "empaque/identidad.h"
#include "empaque/progreso.h"
#include "empaque/recorrido.h"
#include "flujo/sumidero_marcos.h"
#include "indice/indice_nuevo.h"
#include "tar/escritor_tar.h"

#include <map>
#include <string>
#include <string_view>

namespace orcalin {

/// Puts pieces from the disk into a tar stream, and an entry for each into the
/// index. A piece that cannot be read goes to `avisos`, and the next one has
/// its turn.
class Empaquetador {
public:
    /// Writes to `marcos`, which nobody else may do meanwhile; the pieces are in
    /// folders of `origenes`, where `destino` is none of them. All must outlive
    /// this. Throws std::bad_alloc or Fallo.
    Empaquetador(SumideroMarcos &marcos, Origenes &origenes, const FicheroProvisional &destino,
                 Progreso &progreso, Avisos &avisos);

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
    [[nodiscard]] const Primero *primero(const Cosa &cosa) const;
    [[nodiscard]] Ficha ficha(const Pieza &pieza, const Cosa &cosa);
    [[nodiscard]] bool esOtra(const Pieza &pieza, const Cosa &cosa) const;
    void guardaSinContenido(const Pieza &pieza, const Cosa &cosa, const Primero *otro);
    void guardaFichero(const Pieza &pieza, const Cosa &cosa);
    void anota(const Pieza &pieza, const Cosa &cosa, Asiento asiento);
    void falta(const Pieza &pieza, int porque);
    void falta(const Pieza &pieza, const std::string &porque);
    void falta(std::string_view texto);
    [[nodiscard]] std::string ruta(const Pieza &pieza) const;

    SumideroMarcos &marcos;
    EscritorTar tar;
    Origenes &origenes;
    const FicheroProvisional &destino;
    Progreso &progreso;
    Avisos &avisos;
    Extendidos extendidos;
    std::map<Identidad, Primero> primeros; // of files with several names
    bool intacta = true;                   // nothing is missing yet of the piece on its way
    IndiceNuevo asientos;
};

} // namespace orcalin
