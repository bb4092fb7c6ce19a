#pragma once

#include "empaque/recorrido.h"

namespace orcalin {

/// Puts the plan into the order of the archive. Files come first, those of one
/// kind next to each other, because what resembles each other compresses well
/// together; within a kind the path does better than the extension. Then links;
/// then folders, inner ones first, so that no later entry spoils the time of a
/// folder for tools that set it at once, or needs to get into one that is
/// read-only by then.
void ordena(Plan &plan);

} // namespace orcalin
