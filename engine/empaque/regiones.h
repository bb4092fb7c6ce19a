#pragma once

#include <cstdint>
#include <sys/stat.h>
#include <vector>

namespace orcalin {

/// Where a file has content; what is between is a hole, and so is what comes
/// behind the last one.
struct Region {
    std::int64_t desde = 0;
    std::int64_t hasta = 0; ///< the first byte behind it
};

/// The regions of an open file of this status, in order. A file without holes,
/// or whose holes cannot be found out, is one region; of a mere hole the last
/// byte is.
std::vector<Region> regionesDe(int fd, const struct stat &estado);

} // namespace orcalin
