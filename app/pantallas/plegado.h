#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The paths of a listing, folded once for searching: composed (NFC), case
/// folded, UTF-8, one behind the other, so that a search walks plain memory.
///
/// Letter case does not count, accents do: "cancion" does not find "canción",
/// in whichever form either is written. A match ends where a character ends.
///
/// Adding takes long for many paths and belongs off the main thread; one thread
/// at a time.
class TextoPlegado {
public:
    /// That so many are to be added.
    void reserva(size_t rutas);
    /// Adds the path of the next entry, UTF-8; entries are numbered from 0.
    void anade(std::string_view ruta);

    [[nodiscard]] size_t cuantas() const { return m_finales.size(); }

    /// The numbers of all entries whose path contains the text, ascending. Not
    /// for an empty text.
    [[nodiscard]] std::vector<uint32_t> filtra(const QString &texto) const;

    /// Those of the given ones that do, in the same order.
    [[nodiscard]] std::vector<uint32_t> filtra(const QString &texto,
                                               std::span<const uint32_t> entre) const;

private:
    [[nodiscard]] std::string_view ruta(size_t indice) const;
    [[nodiscard]] size_t entradaDe(size_t sitio, size_t desde) const;

    std::string m_texto;
    std::vector<uint64_t> m_finales; // where each path ends; a newline follows
};
