#include "flujo/compresor.h"

#include "comun/medidas.h"

#include <algorithm>
#include <thread>

namespace orcalin {

unsigned obrerosQueCaben(std::uint64_t bytes) {
    constexpr std::uint64_t memoria = 640 * mebi;
    const auto caben = static_cast<unsigned>(memoria / std::max<std::uint64_t>(bytes, 1));
    return std::max(1U, std::min(caben, std::thread::hardware_concurrency()));
}

} // namespace orcalin
