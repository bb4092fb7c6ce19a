#pragma once

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace orcalin {

struct LiberaLectura {
    void operator()(archive *tar) const { archive_read_free(tar); }
};
struct LiberaEscritura {
    void operator()(archive *tar) const { archive_write_free(tar); }
};
struct LiberaFicha {
    void operator()(archive_entry *ficha) const { archive_entry_free(ficha); }
};

using AsaLectura = std::unique_ptr<archive, LiberaLectura>;
using AsaEscritura = std::unique_ptr<archive, LiberaEscritura>;
using Ficha = std::unique_ptr<archive_entry, LiberaFicha>;

/// A fresh, empty record of an entry. Throws std::bad_alloc.
Ficha nuevaFicha();

} // namespace orcalin
