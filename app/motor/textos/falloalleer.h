#pragma once

#include <QString>

#include <variant>

/// Why an archive could not be read.
namespace fallos {

/// Anything but a password.
struct Otro {
    QString texto; ///< the complete message for the user
    bool operator==(const Otro &) const = default;
};

/// The engine needs a password: none was given, or the wrong one. It does not
/// say which.
struct PideContrasena {
    bool operator==(const PideContrasena &) const = default;
};

} // namespace fallos

using FalloAlLeer = std::variant<fallos::Otro, fallos::PideContrasena>;

/// What reading gives: a value, or why there is none.
template<typename Valor>
using Lectura = std::variant<Valor, FalloAlLeer>;
