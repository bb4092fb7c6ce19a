#include "comun/consola.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::size_t bloque = 64 * kibi;

} // namespace

void diceLinea(std::string_view texto) {
    std::string linea(texto);
    linea += '\n';
    while (write(STDERR_FILENO, linea.data(), linea.size()) < 0 && errno == EINTR) {
    }
}

Salida::Salida(std::size_t reservaDada)
    : reserva(std::max(bloque, reservaDada)) {}

bool Salida::olvida() {
    pendiente.clear();
    return !empezada;
}

void Salida::linea(std::string_view texto) {
    pendiente += texto;
    pendiente += '\n';
    if (pendiente.size() >= reserva)
        vacia();
}

void Salida::vacia() {
    empezada = true;
    std::string_view resto = pendiente;
    while (!resto.empty()) {
        const ssize_t escritos = write(STDOUT_FILENO, resto.data(), resto.size());
        if (escritos < 0 && errno != EINTR)
            falla("no se puede escribir la lista", errno);
        if (escritos > 0)
            resto.remove_prefix(static_cast<std::size_t>(escritos));
    }
    pendiente.clear();
}

} // namespace orcalin
