#pragma once

#include <cstdint>
#include <string_view>

namespace orcalin {

/// A text as a number, under a key that this process alone has: nobody can make
/// texts that fall together, so that a table of paths can do without the paths.
std::uint64_t cifraDe(std::string_view texto);

} // namespace orcalin
