#pragma once

#include "flujo/flujo.h"

// What the fuzzer's bytes become so that they get behind the checks of what
// carries them; each function is one thing to feed the reader with.

/// An archive, sound but for the entries of its index: how many there are said to
/// be, then what stands there. Whatever carries them has the right sums.
orcalin::Bloque archivoConIndice(orcalin::Octetos datos);

/// An archive without an index, of entries that are told in four bytes each: of
/// every type, with names that repeat, lead out, or are the user's.
orcalin::Bloque archivoDeEntradas(orcalin::Octetos datos);

/// Reads them as the header of an encrypted file, and as what follows one.
void leeCifrado(orcalin::Octetos datos);
