#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orcalin {

/// A name, which is any bytes, as text that is valid UTF-8 and never breaks or
/// shifts a line: a backslash becomes `\\`; each byte of a control character
/// (C0, DEL, C1), of a line or paragraph separator (U+2028, U+2029), of what is
/// not UTF-8, and a space at the very beginning becomes `\xNN`. Everything else
/// stays. desescapa() undoes it.
std::string escapa(std::string_view nombre);

/// The bytes that escapa() wrote as `texto`; none if it is no such text.
std::optional<std::string> desescapa(std::string_view texto);

/// A name for a message: escaped, between « and ». Words by which whoever reads
/// our messages recognises them («Error», «contraseña»…) are broken up by an
/// escape too, so that a file of such a name cannot pass for a message.
std::string citado(std::string_view nombre);

} // namespace orcalin
