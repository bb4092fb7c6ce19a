#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace orcalin {

/// Something that ends the run. what() is the Spanish text, one line, that
/// follows «Error: ». Names inside it went through citado().
class Fallo : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The Spanish wording of an errno value. The C library's own wording follows
/// the locale, and this program stays in the "C" one (see tar/escritor_tar.h).
std::string causa(int numero);

/// Whether it is this process that lacks something, whatever it was about to
/// look at: the next thing will fare no better.
bool escasea(int numero);

/// Throws Fallo with «que: causa(numero)».
[[noreturn]] void falla(std::string_view que, int numero);

} // namespace orcalin
