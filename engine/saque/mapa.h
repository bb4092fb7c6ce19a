#pragma once

#include "indice/indice.h"
#include "saque/cotejo.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orcalin {

/// What to take out of a place of the tar stream, and as what: the first path
/// is the entry's own or, if that was not asked for, a link's; the rest are to
/// become links to the first.
struct Encargo {
    bool conElla = false;
    std::vector<std::string> comos;
};

using Encargos = std::map<std::uint64_t, Encargo>; ///< by place

/// What an index says of all entries, as far as taking out needs it.
class Mapa {
public:
    /// Reads `indice` to its end. With a path `pedida`, what it comes to is put
    /// together, too. Throws Fallo if the index is damaged or says what cannot be.
    Mapa(Indice &indice, const std::string &pedida);

    [[nodiscard]] const Encargos &encargos() const { return pedidos; }

    /// The frames in which there is any part of it, in order.
    [[nodiscard]] std::vector<std::size_t> marcosPedidos(const Indice &indice) const;

    /// The folders above what was asked for, with their permissions.
    [[nodiscard]] const std::vector<std::pair<std::string, unsigned>> &carpetas() const {
        return deCamino;
    }

    /// The first place of an entry from `lugar` on, or the end of the stream.
    [[nodiscard]] std::uint64_t siguiente(std::uint64_t lugar) const;

    /// Whether the entry `ruta` is at that place.
    [[nodiscard]] bool esta(const std::string &ruta, std::uint64_t lugar) const;

    /// Whether the archive was made with an incomplete entry `ruta`.
    [[nodiscard]] bool incompleta(const std::string &ruta) const;

    /// To be told what the stream has.
    [[nodiscard]] Cotejo &cotejo() { return comparacion; }

private:
    void encarga(const Asiento &asiento);

    const std::string &pedida;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> lugares; // and cifraDe() of what is there
    std::unordered_set<std::uint64_t> incompletas;                // likewise
    std::vector<std::pair<std::uint64_t, std::string>> ligados; // links, by the place of their file
    Encargos pedidos;
    std::vector<std::pair<std::string, unsigned>> deCamino;
    Cotejo comparacion;
};

} // namespace orcalin
