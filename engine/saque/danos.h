#pragma once

#include "saque/archivo.h"

#include <string>
#include <vector>

namespace orcalin {

/// The paths of the entries that lie, with any part, in frames of `archivo`
/// which cannot be read, or link to such a file: what is lost, while everything
/// else can still be taken out, one by one. Reads every frame on its own. None
/// without an index. Throws Fallo if the index breaks off.
std::vector<std::string> entradasDanadas(const Archivo &archivo);

} // namespace orcalin
