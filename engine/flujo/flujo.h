#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orcalin {

using Octetos = std::span<const unsigned char>;
using Hueco = std::span<unsigned char>;
using Bloque = std::vector<unsigned char>; ///< bytes on their way, with an owner

/// Where bytes come from: a file, a decryption, a decompression.
class Fuente {
public:
    Fuente() = default;
    Fuente(const Fuente &) = delete;
    Fuente &operator=(const Fuente &) = delete;
    virtual ~Fuente() = default;

    /// Puts up to hueco.size() (> 0) bytes into `hueco` and returns how many; 0
    /// only at the sound end of the data. Throws Fallo on damage, on a cut-off
    /// end and on a reading failure; the source is then of no further use.
    virtual std::size_t lee(Hueco hueco) = 0;
};

/// Reads until `hueco` is full or the data end; returns the bytes read.
std::size_t llena(Fuente &fuente, Hueco hueco);

/// Whoever takes bytes.
class Receptor {
public:
    Receptor() = default;
    Receptor(const Receptor &) = delete;
    Receptor &operator=(const Receptor &) = delete;
    virtual ~Receptor() = default;

    /// Takes all of `datos`. Throws Fallo; the receiver is then of no further use.
    virtual void escribe(Octetos datos) = 0;
};

/// Where bytes go in the end: a file, or an encryption above one.
class Sumidero : public Receptor {
public:
    /// Completes what was written and closes the sink below, down to the file.
    /// To be called once; a sink that is destroyed without it was given up.
    virtual void cierra() = 0;
};

} // namespace orcalin
