#pragma once

#include <cstdint>

namespace orcalin {

/// Bytes of memory that this process can still have without pushing others out:
/// what the system calls available, or less where the process or one of its
/// control groups (version 2) is limited. What cannot be read sets no limit.
std::uint64_t memoriaLibre();

} // namespace orcalin
