#pragma once

#include "tar/asa.h"

#include <ctime>

namespace orcalin {

/// Both stand between us and the library, for which the fraction of a time
/// before 1970 counts forwards while its whole seconds count backwards: it
/// writes -1.5 s (-2 s and half a second on) as «-2.5», and takes the «-1.5» of
/// everybody else for -0.5 s.

/// When the entry was last modified. False if it does not say.
bool leeHora(archive_entry *ficha, timespec &hora);

/// Says when the entry was last modified. Within the last second of 1969, which
/// the library cannot express, the fraction is lost.
void ponHora(archive_entry *ficha, const timespec &hora);

} // namespace orcalin
