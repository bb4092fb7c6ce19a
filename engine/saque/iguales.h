#pragma once

#include "flujo/flujo.h"

#include <string>
#include <string_view>

namespace orcalin {

// Whether what is called `nombre` in the folder `carpeta` is what was about to
// come out under that name: kind and content, not the attributes. What cannot
// be read is something else. Nothing is followed, and nothing blocks.

/// A regular file that holds just this.
bool esFicheroCon(int carpeta, const std::string &nombre, Octetos contenido);

/// A regular file that holds the same as the regular file open as `fd`, or is it.
bool esFicheroComo(int carpeta, const std::string &nombre, int fd);

/// A symbolic link with this text.
bool esEnlaceA(int carpeta, const std::string &nombre, std::string_view destino);

} // namespace orcalin
