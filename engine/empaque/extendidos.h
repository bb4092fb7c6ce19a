#pragma once

#include "empaque/cosa.h"
#include "tar/asa.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orcalin {

/// Takes what is told of a thing beside its status: whose it is by name, its
/// extended attributes and its access lists.
class Extendidos {
public:
    /// Throws std::bad_alloc.
    Extendidos();

    /// Adds all of it to `ficha`, which has the status already. Returns, as text
    /// for a message, which attribute cannot be had or would not be read by
    /// anybody, and is therefore left out; empty if there is none.
    std::string anade(archive_entry *ficha, const Cosa &cosa);

private:
    /// A line of an access list.
    struct Renglon {
        int permisos = 0;
        int marca = 0;
        std::uint32_t quien = 0;
        std::string nombre;
    };

    void anadeUno(archive_entry *ficha, const Cosa &cosa, const char *nombre);
    void anadeLista(archive_entry *ficha, std::string_view valor, int cual, const char *nombre);
    static bool cabe(const Renglon &uno);
    Renglon renglon(std::string_view crudo);
    void queja(std::string_view nombre, std::string_view porque);

    AsaLectura cuentas;
    std::vector<char> nombres;
    std::vector<char> octetos; // of a value
    // Of the entry on its way:
    std::size_t caben = 0; // bytes of its extended header
    std::string primera;
    std::size_t mas = 0; // complaints beside the first
};

} // namespace orcalin
