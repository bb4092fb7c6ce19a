#pragma once

#include "cifrado/trozo_age.h"

#include <array>
#include <future>
#include <optional>
#include <string>
#include <vector>

namespace orcalin {

/// Writes an age v1 file that a password opens.
class SumideroAge : public Sumidero {
public:
    /// Begins to derive the key in a thread of its own: there is plenty to
    /// compress before the first bytes are written, which wait for it.
    /// `abajo` must outlive this.
    SumideroAge(Sumidero &abajo, Secreto contrasena, int factor);

    void escribe(Octetos datos) override;
    void cierra() override;

    /// What the file begins with; once something has been written to it.
    [[nodiscard]] const std::string &cabecera() const { return texto; }

    [[nodiscard]] const Secreto &claveDelFichero() const { return clave; }

private:
    void empieza();
    void sellaPendiente(bool ultimo);
    void sella(Octetos trozo, bool ultimo);

    Sumidero &abajo;
    Secreto clave; // outlives the derivation, which wraps it
    std::array<unsigned char, largoNonceAge> nonce{};
    std::optional<SelloAge> sello;
    std::future<std::string> derivada; // the header, until it is written
    std::string texto;                 // the header, from then on
    std::vector<unsigned char> claro;  // what came in pieces smaller than a chunk
    std::vector<unsigned char> sellado;
    std::uint64_t numero = 0;
};

} // namespace orcalin
