#pragma once

#include "flujo/flujo.h"

#include <cstdint>

namespace orcalin {

/// Bytes that can be read from any place, by several threads at once: a file,
/// or what an encrypted file holds.
class Almacen {
public:
    Almacen() = default;
    Almacen(const Almacen &) = delete;
    Almacen &operator=(const Almacen &) = delete;
    virtual ~Almacen() = default;

    /// How many bytes there are.
    [[nodiscard]] virtual std::uint64_t largo() const = 0;

    /// Fills `hueco` with the bytes from `desde` on and returns how many they
    /// are: fewer than asked for only where the bytes end, 0 from there on.
    /// Throws Fallo on damage and on a reading failure.
    virtual std::size_t lee(std::uint64_t desde, Hueco hueco) const = 0;
};

} // namespace orcalin
