#pragma once

#include "flujo/descriptor.h"

#include <cstdint>
#include <list>
#include <string>
#include <sys/types.h>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orcalin {

/// The folders that are packed, each known by a number, and opened from the one
/// that it is in, never through a symbolic link: whoever puts a link in the
/// place of a folder meanwhile gets nothing else packed by that. There is also
/// no path that could be too long for the system. The latest ones stay open.
class Origenes {
public:
    using Numero = std::int32_t;

    Origenes();

    /// The folder at a path that the user gave, which may lead through links;
    /// empty for the current one.
    Numero lugar(const std::string &ruta);

    /// The folder `nombre` in another.
    Numero dentro(Numero madre, const std::string &nombre);

    /// Its descriptor, which is good until the next call; perhaps without the
    /// right to read. -1 with errno set if it cannot be opened.
    int abre(Numero carpeta);

    /// For messages: the path of something in a folder.
    [[nodiscard]] std::string ruta(Numero carpeta, const std::string &nombre) const;

private:
    struct Carpeta {
        Numero madre = ninguna;
        std::string nombre; // of one without a mother, its path
        dev_t disco = 0;    // with `inodo`, which one it is, once it was open
        ino_t inodo = 0;
    };
    using Abiertas = std::list<std::pair<Numero, Descriptor>>;

    static constexpr Numero ninguna = -1;

    Numero anade(Carpeta carpeta);
    int guardada(Numero carpeta);
    int subeA(Numero carpeta);
    int guarda(Numero carpeta, Descriptor fd);

    std::size_t cuantas; // are kept open
    std::vector<Carpeta> carpetas;
    Abiertas abiertas; // the latest first
    std::unordered_map<Numero, Abiertas::iterator> donde;
};

} // namespace orcalin
