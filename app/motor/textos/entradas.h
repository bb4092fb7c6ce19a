#pragma once

#include "entrada.h"

#include <QList>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The entries of a listing, by their numbers, in less than half the memory that
/// a list of them takes: the paths lie one behind the other, and an entry is put
/// together when it is asked for. Filled by one thread; then any.
class Entradas {
public:
    /// Adds one at the end. `ruta` is valid UTF-8 and not empty.
    void anade(const Caracter &tipo, qint64 bytes, std::string_view ruta);
    /// No more come: gives back the memory that was kept for them.
    void completa();

    [[nodiscard]] size_t cuantas() const { return m_finales.size(); }
    /// The path of an entry, UTF-8; as long as this lives.
    [[nodiscard]] std::string_view ruta(size_t indice) const;
    /// Without its `id`: here an entry is known by its number.
    [[nodiscard]] Entrada operator[](size_t indice) const;

    /// All of them, each with an `id` of its own.
    [[nodiscard]] QList<Entrada> lista() const;

private:
    std::string m_rutas;             // UTF-8
    std::vector<uint64_t> m_finales; // where each path ends
    std::vector<qint64> m_bytes;
    std::vector<Caracter> m_tipos;
};
