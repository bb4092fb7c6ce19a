#pragma once

#include <unistd.h>
#include <utility>

namespace orcalin {

/// Owns a file descriptor; -1 stands for none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int numero)
        : fd(numero) {}
    Descriptor(Descriptor &&otro) noexcept
        : fd(std::exchange(otro.fd, -1)) {}
    Descriptor &operator=(Descriptor &&otro) noexcept {
        std::swap(fd, otro.fd);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (fd >= 0)
            close(fd);
    }

    [[nodiscard]] int numero() const { return fd; }
    [[nodiscard]] bool valido() const { return fd >= 0; }

private:
    int fd = -1;
};

} // namespace orcalin
