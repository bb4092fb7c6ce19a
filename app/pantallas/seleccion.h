#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Which entries of a listing are selected, by number. Every operation costs at
/// most a walk over what it is given, and counting costs nothing: a listing may
/// hold a million entries. Numbers are below that of the entries. One thread at
/// a time.
class Seleccion {
public:
    /// For a listing of so many entries, none of them selected.
    void estrena(size_t entradas);

    [[nodiscard]] bool tiene(size_t indice) const { return m_marcas[indice]; }
    [[nodiscard]] size_t cuantas() const { return m_cuantas; }
    /// The selected numbers, ascending. Walks all entries.
    [[nodiscard]] std::vector<uint32_t> todas() const;

    /// Selects none.
    void vacia();
    /// Selects one, or takes it out; again does nothing.
    void pon(size_t indice, bool dentro);
    /// Selects these too.
    void anade(std::span<const uint32_t> indices);

private:
    std::vector<bool> m_marcas;
    size_t m_cuantas = 0;
};
