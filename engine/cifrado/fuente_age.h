#pragma once

#include "cifrado/trozo_age.h"

#include <memory>
#include <optional>
#include <vector>

namespace orcalin {

/// The plaintext of an age v1 payload. No byte is handed out before its chunk
/// has been authenticated.
class FuenteAge : public Fuente {
public:
    /// `carga` begins right after the header.
    FuenteAge(std::unique_ptr<Fuente> carga, const Secreto &claveFichero);

    std::size_t lee(Hueco hueco) override;

private:
    void abreOtro();

    std::unique_ptr<Fuente> carga;
    std::optional<SelloAge> sello;
    std::vector<unsigned char> sellado;
    std::vector<unsigned char> claro;
    Octetos pendiente; // what of `claro` has not been handed out
    std::uint64_t numero = 0;
    bool terminado = false;
};

} // namespace orcalin
