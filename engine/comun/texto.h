#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orcalin {

/// Who reads what is written.
enum class Lector { programa, terminal };
[[nodiscard]] Lector lectorDe(int fd);

/// A name, which is any bytes, as text that is valid UTF-8 and never breaks or
/// shifts a line: a backslash becomes `\\`; each byte of a control character
/// (C0, DEL, C1), of a line or paragraph separator (U+2028, U+2029), of what is
/// not UTF-8, and a space at the very beginning becomes `\xNN`. Everything else
/// stays, but that a terminal gets the characters that change the direction of
/// writing (U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069) as
/// `\xNN` too: they make a name look like another. desescapa() undoes it all.
std::string escapa(std::string_view nombre, Lector lector = Lector::programa);

/// The bytes that escapa() wrote as `texto`; none if it is no such text.
std::optional<std::string> desescapa(std::string_view texto);

/// A name for a message on standard error: escaped, between « and », and cut to
/// its first thousand characters («…»). Words by which whoever reads
/// our messages recognises them («Error», «contraseña»…) are broken up by an
/// escape too, so that a file of such a name cannot pass for a message.
std::string citado(std::string_view nombre);

} // namespace orcalin
