#pragma once

#include "flujo/flujo.h"
#include "tar/asa.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

namespace orcalin {

/// Reads a tar stream entry by entry. Its end is believed only if the end
/// marker is there and everything behind it reads well, too.
class LectorTar {
public:
    /// Throws std::bad_alloc or Fallo.
    explicit LectorTar(std::unique_ptr<Fuente> fuente);

    /// The next entry, valid until the next call; null at the end. Throws Fallo.
    archive_entry *siguiente();

    /// Where in the stream the entry's headers begin.
    [[nodiscard]] std::uint64_t posicion() const;

    /// The entry's next piece of content and its offset; an empty one at the
    /// end. Offsets may leave holes. Valid until the next call. Throws Fallo.
    Octetos trozo(std::int64_t &desplazamiento);

    /// Whether some of the entry's content was asked for: there is no way back.
    [[nodiscard]] bool empezada() const { return conTrozos; }

private:
    static la_ssize_t alLeer(archive *, void *yo, const void **datos);
    void compruebaElFinal();
    [[noreturn]] void falla();

    std::unique_ptr<Fuente> fuente;
    std::vector<unsigned char> bloque;
    AsaLectura tar;
    std::exception_ptr pendiente; // thrown below, must not cross the C library
    bool reconocido = false;      // at least one header was read
    bool conTrozos = false;       // of the current entry
    bool agotada = false;         // the source came to its end
};

} // namespace orcalin
