#include "comun/consola.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr std::size_t bloque = 64 * kibi;
constexpr std::string_view borrado = "\r\x1b[K"; // to the left margin, and all of the line

// What is redrawn and what is said come from several threads.
std::timed_mutex turno;
bool hayRenglon = false;

/// False if it cannot be.
bool escribe(int fd, std::string_view texto) {
    while (!texto.empty()) {
        const ssize_t escritos = write(fd, texto.data(), texto.size());
        if (escritos < 0 && errno != EINTR)
            return false;
        if (escritos > 0)
            texto.remove_prefix(static_cast<std::size_t>(escritos));
    }
    return true;
}

/// Whoever reads messages, or nobody, is no reason to stop.
void escribe(std::string_view texto) {
    escribe(STDERR_FILENO, texto);
}

std::size_t columnas() {
    constexpr std::size_t deSiempre = 80;
    winsize medida{};
    const bool sabida = ioctl(STDERR_FILENO, TIOCGWINSZ, &medida) == 0 && medida.ws_col > 0;
    return sabida ? medida.ws_col : deSiempre;
}

/// The first `cuantos` characters of UTF-8 text.
std::string_view primeros(std::string_view texto, std::size_t cuantos) {
    for (std::size_t i = 0; i < texto.size(); ++i) {
        const bool empieza = (static_cast<unsigned char>(texto[i]) & 0xc0U) != 0x80;
        if (empieza && cuantos-- == 0)
            return texto.substr(0, i);
    }
    return texto;
}

} // namespace

bool ocupaLosEstandar() {
    // The wrong way round, so that nobody takes what is lost for written.
    constexpr std::array<int, 3> modos{O_WRONLY, O_RDONLY, O_RDONLY};
    for (int fd = 0; fd < static_cast<int>(modos.size()); ++fd)
        if (fcntl(fd, F_GETFD) < 0 && open("/dev/null", modos.at(fd)) != fd)
            return false;
    return true;
}

void diceLinea(std::string_view texto) {
    const std::scoped_lock guardia(turno);
    std::string linea(hayRenglon ? borrado : std::string_view());
    hayRenglon = false;
    linea += texto;
    linea += '\n';
    escribe(linea);
}

void diceYa(std::string_view texto) {
    constexpr int milisegundos = 200;
    // Whoever has the turn may be waiting for a reader. It is not given back:
    // nobody speaks after us.
    (void)turno.try_lock_for(std::chrono::milliseconds(milisegundos));
    const std::string linea = std::string(hayTerminal() ? borrado : "").append(texto) + '\n';
    pollfd salida{STDERR_FILENO, POLLOUT, 0};
    if (poll(&salida, 1, milisegundos) == 1)
        escribe(linea);
}

bool hayTerminal() {
    const char *clase = getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && clase != nullptr && std::string_view(clase) != "dumb";
}

void redibuja(std::string_view texto) {
    const std::scoped_lock guardia(turno);
    // In the last column the cursor of some terminals is on the next line already.
    escribe(std::string(borrado) + std::string(primeros(texto, columnas() - 1)));
    hayRenglon = true;
}

void borraRenglon() {
    const std::scoped_lock guardia(turno);
    if (hayRenglon)
        escribe(borrado);
    hayRenglon = false;
}

Salida::Salida(std::size_t reservaDada)
    : reserva(std::max(bloque, reservaDada)) {}

bool Salida::olvida() {
    pendiente.clear();
    return !empezada;
}

void Salida::linea(std::string_view dicho) {
    texto(dicho);
    texto("\n");
}

void Salida::texto(std::string_view dicho) {
    pendiente += dicho;
    if (pendiente.size() >= reserva)
        vacia();
}

void Salida::vacia() {
    empezada = true;
    if (!escribe(STDOUT_FILENO, pendiente))
        falla("no se puede escribir la lista", errno);
    pendiente.clear();
}

} // namespace orcalin
