#pragma once

#include "saque/carpeta.h"

#include <set>
#include <string>
#include <unordered_map>

namespace orcalin {

/// What stands beside a name under the same name with a number (see
/// numerado()), with gaps or without. The folder asked for last is remembered
/// as it was then; it may have more by now.
class Hermanos {
public:
    /// The numbers in use beside `nombre`; none if the folder cannot be read.
    const std::set<unsigned> &numeros(const CarpetaAbierta &carpeta, const std::string &nombre,
                                      bool deCarpeta);

private:
    void lee(const CarpetaAbierta &carpeta);
    void apunta(std::string_view nombre, std::size_t tronco, const char *marca);

    CarpetaAbierta leida;
    std::unordered_map<std::string, std::set<unsigned>> usados; // folders' names end in a slash
};

} // namespace orcalin
