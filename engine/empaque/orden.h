#pragma once

#include "empaque/recorrido.h"

namespace orcalin {

/// Puts the plan into the order of the archive: folders, before anything that
/// is in them; links; then files, of one kind next to each other and within a
/// kind of one extension, because what resembles each other compresses well
/// together.
void ordena(Plan &plan);

} // namespace orcalin
