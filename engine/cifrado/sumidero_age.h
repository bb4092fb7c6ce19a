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

private:
    void empieza();
    void sellaPendiente(bool ultimo);
    void sella(Octetos trozo, bool ultimo);

    Sumidero &abajo;
    std::array<unsigned char, largoNonceAge> nonce{};
    std::optional<SelloAge> sello;
    std::future<std::string> cabecera; // until it is written
    std::vector<unsigned char> claro;  // what came in pieces smaller than a chunk
    std::vector<unsigned char> sellado;
    std::uint64_t numero = 0;
};

} // namespace orcalin
