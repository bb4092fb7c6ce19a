#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orcalin {

/// What went wrong with single entries while everything else goes on. Each is
/// told at once, in a line that is no `Error` line.
class Avisos {
public:
    /// Tells something that takes nothing away from the result.
    void avisa(std::string_view texto);

    /// Tells that an entry, or a part of it, is missing in the result.
    void falta(std::string_view texto);

    [[nodiscard]] std::size_t faltas() const { return cuantas; }

    /// Throws Fallo if anything is missing: the only thing itself, or how many.
    /// `hacer` is what they could not be, as in «3 elementos no se pudieron guardar»;
    /// `ademas` is said behind all of it.
    void remata(std::string_view hacer, std::string_view ademas = {}) const;

private:
    std::size_t cuantas = 0;
    std::string primera;
};

} // namespace orcalin
