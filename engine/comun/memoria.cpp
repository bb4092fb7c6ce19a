#include "comun/memoria.h"

#include "comun/medidas.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace orcalin {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t sinLimite = std::numeric_limits<std::uint64_t>::max();

std::string contenido(const fs::path &ruta) {
    std::ifstream fichero(ruta);
    return {std::istreambuf_iterator<char>(fichero), {}};
}

/// The number at the beginning of `texto`; `siNo` if there is none.
std::uint64_t numero(const std::string &texto, std::uint64_t siNo) {
    std::istringstream lector(texto);
    std::uint64_t valor = 0;
    return lector >> valor ? valor : siNo;
}

/// What follows `clave` in its line, in files of one number a line.
std::uint64_t valor(const std::string &texto, const std::string &clave, std::uint64_t siNo) {
    const auto i = ("\n" + texto).find("\n" + clave);
    return i == std::string::npos ? siNo : numero(texto.substr(i + clave.size()), siNo);
}

std::uint64_t resta(std::uint64_t limite, std::uint64_t usado) {
    return limite - std::min(limite, usado);
}

std::uint64_t delSistema() {
    const auto kibis = valor(contenido("/proc/meminfo"), "MemAvailable:", sinLimite);
    return kibis == sinLimite ? kibis : kibis * kibi;
}

std::uint64_t delGrupo(const fs::path &carpeta) {
    const auto limite = numero(contenido(carpeta / "memory.max"), sinLimite);
    if (limite == sinLimite)
        return sinLimite;
    // Pages of files count as used, and give way.
    const std::string desglose = contenido(carpeta / "memory.stat");
    const auto cede = valor(desglose, "active_file", 0) + valor(desglose, "inactive_file", 0);
    return resta(limite, resta(numero(contenido(carpeta / "memory.current"), 0), cede));
}

/// Each group is limited by those that it is in, too.
std::uint64_t deLosGrupos() {
    const std::string propio = contenido("/proc/self/cgroup");
    constexpr std::size_t marca = 4; // "0::/"
    const auto i = ("\n" + propio).find("\n0::/");
    if (i == std::string::npos)
        return sinLimite;
    const fs::path raiz = "/sys/fs/cgroup";
    fs::path carpeta = raiz / propio.substr(i + marca, propio.find('\n', i) - i - marca);
    std::uint64_t minimo = delGrupo(raiz);
    for (; carpeta.has_relative_path() && carpeta != raiz; carpeta = carpeta.parent_path())
        minimo = std::min(minimo, delGrupo(carpeta));
    return minimo;
}

std::uint64_t hasta(int recurso, std::uint64_t usado) {
    rlimit limite{};
    if (getrlimit(static_cast<__rlimit_resource>(recurso), &limite) != 0 ||
        limite.rlim_cur == RLIM_INFINITY)
        return sinLimite;
    return resta(limite.rlim_cur, usado);
}

std::uint64_t delProceso() {
    std::istringstream lector(contenido("/proc/self/statm")); // in pages
    std::uint64_t todo = 0;
    std::uint64_t otro = 0;
    std::uint64_t datos = 0;
    lector >> todo >> otro >> otro >> otro >> otro >> datos;
    const auto pagina = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return std::min(hasta(RLIMIT_AS, todo * pagina), hasta(RLIMIT_DATA, datos * pagina));
}

} // namespace

std::uint64_t memoriaLibre() {
    return std::min({delSistema(), deLosGrupos(), delProceso()});
}

} // namespace orcalin
