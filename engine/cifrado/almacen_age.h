#pragma once

#include "cifrado/trozo_age.h"
#include "flujo/almacen.h"

namespace orcalin {

/// The plaintext of an age v1 payload. A read opens the chunks that it touches
/// and no others, and no byte is handed out before its chunk has been
/// authenticated; whole chunks are decrypted in the reader's own memory.
///
/// That the payload ends where it should is authenticated with its last byte:
/// until that is read, a file that was cut is read as far as it goes.
class AlmacenAge : public Almacen {
public:
    /// The payload is what `abajo` holds from `inicio` on, right after the
    /// header. `abajo` must outlive this. Throws Fallo if it is cut too short
    /// to hold anything.
    AlmacenAge(const Almacen &abajo, std::uint64_t inicio, const Secreto &claveFichero);

    /// As the length of the file has it, which only the last byte confirms.
    [[nodiscard]] std::uint64_t largo() const override { return claros; }

    /// Throws Fallo: «el archivo está dañado» for a chunk that is not the one
    /// sealed there and for anything behind the last one, «el archivo está
    /// incompleto» where it was cut. A short chunk at the end that does not
    /// open may be either, and the text says so.
    std::size_t lee(std::uint64_t desde, Hueco hueco) const override;

private:
    std::size_t leeTrozo(std::uint64_t desde, Hueco hueco) const;
    void abre(std::uint64_t numero, Hueco sellado, Hueco claro) const;
    bool seAbre(std::uint64_t numero, bool comoUltimo, Hueco sellado, Hueco claro) const;
    [[nodiscard]] std::size_t selladosDe(std::uint64_t numero) const;
    [[nodiscard]] std::size_t clarosDe(std::uint64_t numero) const;
    [[noreturn]] void cuentaElFinal() const;

    const Almacen &abajo;
    SelloAge sello;
    std::uint64_t inicio; // of the first chunk
    std::uint64_t sellados;
    std::uint64_t ultimo; // number of the last chunk
    std::uint64_t claros;
};

} // namespace orcalin
