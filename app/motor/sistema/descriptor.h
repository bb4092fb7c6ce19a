#pragma once

#include <unistd.h>
#include <utility>

/// Owns one file descriptor and closes it. Movable, not copyable.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int numero)
        : m_numero(numero) {}
    Descriptor(Descriptor &&otro) noexcept
        : m_numero(std::exchange(otro.m_numero, -1)) {}
    Descriptor &operator=(Descriptor &&otro) noexcept {
        std::swap(m_numero, otro.m_numero);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { cierra(); }

    /// The number, or -1 when there is none.
    [[nodiscard]] int numero() const { return m_numero; }
    explicit operator bool() const { return m_numero >= 0; }

    /// Gives the number up without closing it.
    int suelta() { return std::exchange(m_numero, -1); }

    void cierra() {
        if (m_numero >= 0)
            ::close(std::exchange(m_numero, -1));
    }

private:
    int m_numero = -1;
};
