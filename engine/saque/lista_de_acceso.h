#pragma once

#include "tar/asa.h"

#include <string>

namespace orcalin {

/// The entry's access control list as the value of the attribute that Linux
/// keeps it in; empty if the entry has none beyond its mode. `cuentas` is a
/// writer to disk that finds out who a name stands for.
std::string listaDeAcceso(archive_entry *ficha, archive *cuentas);

/// The same of the list that a folder hands on to what is made in it.
std::string listaPorDefecto(archive_entry *ficha, archive *cuentas);

} // namespace orcalin
