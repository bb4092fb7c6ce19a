#pragma once

#include "cifrado/trozo_age.h"

#include <optional>
#include <vector>

namespace orcalin {

/// Writes an age v1 file that a password opens.
class SumideroAge : public Sumidero {
public:
    /// Derives the key, which takes as long as scrypt does, and writes the
    /// header. `abajo` must outlive this; the password is not kept.
    SumideroAge(Sumidero &abajo, const Secreto &contrasena, int factor);

    void escribe(Octetos datos) override;
    void cierra() override;

private:
    void sellaPendiente(bool ultimo);
    void sella(Octetos trozo, bool ultimo);

    Sumidero &abajo;
    std::optional<SelloAge> sello;
    std::vector<unsigned char> claro; // what came in pieces smaller than a chunk
    std::vector<unsigned char> sellado;
    std::uint64_t numero = 0;
};

} // namespace orcalin
