#pragma once

#include "cifrado/secreto.h"

#include <array>
#include <string>
#include <string_view>

namespace orcalin {

/// The first line of an age v1 file, its end included.
inline constexpr std::string_view marcaAge = "age-encryption.org/v1\n";

/// Work factors: log2 of scrypt's N. The highest costs 4 GiB and some seconds;
/// a file that asks for more is out to stall whoever opens it.
inline constexpr int factorHabitual = 17;
inline constexpr int factorMaximo = 22;

/// Bytes of the file key, from which everything else is derived.
inline constexpr std::size_t largoClaveFichero = 16;

/// No header that this program reads is longer, in bytes.
inline constexpr std::size_t cabeceraMaxima = 1024;

/// The header of an age v1 file with a password: one scrypt recipient, which
/// wraps the file key, and a MAC of everything before it.
class CabeceraAge {
public:
    /// Reads the header at the beginning of `octetos` (of a whole file, or its
    /// first cabeceraMaxima bytes). Only the canonical form is taken. Throws
    /// Fallo: damage, a recipient of another kind, too high a work factor.
    static CabeceraAge lee(std::string_view octetos);

    /// The header that wraps `claveFichero` with `contrasena`, as it stands in
    /// the file. Takes as long as scrypt does.
    static std::string crea(const Secreto &contrasena, int factor, const Secreto &claveFichero);

    /// The file key. Throws Fallo: a wrong password, a MAC that does not match,
    /// or, at once, less memory than the work takes. Takes as long as scrypt does.
    [[nodiscard]] Secreto abre(const Secreto &contrasena) const;

    /// Whether this is the file key, told by the MAC, at no cost.
    [[nodiscard]] bool esSuClave(const Secreto &claveFichero) const;

    /// log2 of scrypt's N.
    [[nodiscard]] int factorDeTrabajo() const { return factor; }

    /// The header as it stands in the file.
    [[nodiscard]] Octetos octetos() const {
        return {reinterpret_cast<const unsigned char *>(texto.data()), texto.size()};
    }

    /// Length in bytes: where the payload begins.
    [[nodiscard]] std::size_t largo() const { return texto.size(); }

private:
    std::string texto;
    std::size_t autenticado = 0; // bytes of it, up to and with "---"
    std::string sal;
    std::string envuelta; // the file key, encrypted
    std::string mac;
    int factor = 0;
};

} // namespace orcalin
