#pragma once

#include <cstddef>

namespace orcalin {

inline constexpr std::size_t kibi = 1024;
inline constexpr std::size_t mebi = kibi * kibi;

} // namespace orcalin
