#pragma once

#include "flujo/flujo.h"

#include <string>
#include <string_view>
#include <sys/types.h>

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

/// Where in the open file from `desde` on there are data; `bytes`, its size, if
/// only a hole is left.
off_t trasElHueco(int fd, off_t desde, off_t bytes);

} // namespace orcalin
