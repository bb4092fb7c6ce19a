#pragma once

#include "tar/asa.h"

#include <string>
#include <vector>

namespace orcalin {

/// The library writes the name of an extended attribute as in a URL where it is
/// not plain ASCII, and nobody, not even its own reader, turns that back.
/// Readers take the bytes as they are. So such a name is written as another of
/// the same length, and put back where it came out.
class NombresDeAtributos {
public:
    /// Changes those names in `ficha` that would not come out as they are.
    explicit NombresDeAtributos(archive_entry *ficha);

    [[nodiscard]] bool hayQueReponer() const { return raros; }

    /// Puts them back into the headers that were written of the entry.
    void repon(std::vector<unsigned char> &cabeceras) const;

private:
    std::vector<std::string> todos; // in the order in which they are written
    bool raros = false;
};

} // namespace orcalin
