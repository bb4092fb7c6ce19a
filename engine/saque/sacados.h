#pragma once

#include "comun/cifra.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orcalin {

/// What of an archive stands in the destination by now, and under which names.
/// Paths are the archive's; only the last component of one may stand under
/// another name, and its folder has its own.
class Sacados {
public:
    enum class Que : unsigned char {
        fichero, ///< regular, and so what hard links lead to
        enlace,
        carpeta,
    };

    /// `ruta` came out as `nombre`, written by this run (`nuevo`) or found there.
    /// Of folders only those are told that have another name.
    void anota(const std::string &ruta, Que que, const std::string &nombre, bool nuevo);

    /// What stands for `ruta` will be something else.
    void olvida(const std::string &ruta);

    /// Whether this run wrote the file or link that stands for `ruta`.
    [[nodiscard]] bool esNuestro(std::string_view ruta) const;

    /// Whether a file or link stands for `ruta`, whoever wrote it.
    [[nodiscard]] bool hay(std::string_view ruta) const { return sacados.contains(cifraDe(ruta)); }

    /// Whether a file stands for `ruta`.
    [[nodiscard]] bool hayFichero(std::string_view ruta) const;

    /// The last component of the name that stands for `ruta`.
    [[nodiscard]] std::string nombre(std::string_view ruta) const;

    /// The whole path that stands for `ruta`.
    [[nodiscard]] std::string real(std::string_view ruta) const;

    /// Each path of which something new stands under another name, and that name
    /// as a whole path; in order.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> renombrados() const;

    [[nodiscard]] bool algoNuevo() const { return algo; }

private:
    struct Sacado {
        bool fichero;
        bool nuestro;
    };
    struct Otro {
        std::string nombre;
        bool nuevo; // it, or something in it
    };

    void cuentaEnSusCarpetas(std::string_view ruta);

    std::unordered_map<std::uint64_t, Sacado> sacados; // files and links, by cifraDe()
    std::map<std::string, Otro, std::less<>> otros;    // those with another name
    bool algo = false;
};

/// `ruta` up to its last slash, and what is behind that.
std::string_view madreDe(std::string_view ruta);
std::string_view nombreDe(std::string_view ruta);

} // namespace orcalin
