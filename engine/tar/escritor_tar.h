#pragma once

#include "flujo/flujo.h"
#include "tar/asa.h"

#include <exception>
#include <vector>

namespace orcalin {

/// Writes a pax tar stream, with the mark of an archive with an index at its
/// beginning. Every operation throws what the receiver below
/// throws, or Fallo when the stream cannot go on.
///
/// Names are bytes here. The process stays in the "C" locale, where the
/// library finds that a name beyond ASCII has no UTF-8 form, keeps its bytes
/// and marks that one entry with hdrcharset=BINARY. Asked for by option, the
/// mark would stand at every entry, and GNU tar complains about each.
class EscritorTar {
public:
    /// `abajo` must outlive this. Throws std::bad_alloc or Fallo.
    explicit EscritorTar(Receptor &abajo);

    /// Begins an entry; what the one before lacks of its size is filled with
    /// zeros. False if this entry cannot be stored: the stream is as before. May
    /// change the names of its attributes, which are stored as they were given.
    bool cabecera(archive_entry *ficha);

    /// Adds to the entry's content; what goes past its size is dropped.
    void datos(Octetos datos);

    /// Completes the entry, so that the next byte is the next one's header.
    void acabaEntrada();

    /// Writes the end marker. The receiver stays open.
    void cierra();

private:
    static la_ssize_t alEscribir(archive *, void *yo, const void *datos, std::size_t largo);
    void comprueba(la_ssize_t resultado);

    Receptor &abajo;
    bool conMarca = false; // it has been written
    std::vector<unsigned char> retenido; // headers that are not passed on yet
    bool retiene = false;
    AsaEscritura tar;
    std::exception_ptr pendiente; // thrown below, must not cross the C library
};

} // namespace orcalin
