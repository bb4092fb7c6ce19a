#include "empaque/nombres.h"

#include "comun/numerado.h"

namespace orcalin {
namespace {

std::string propio(const std::filesystem::path &origen) {
    auto nombre = origen.filename();
    if (nombre.empty() || nombre == "." || nombre == "..") {
        std::error_code error;
        nombre = std::filesystem::canonical(origen, error).filename();
    }
    return nombre.empty() ? "raíz" : nombre.string();
}

} // namespace

std::string Nombres::para(const std::filesystem::path &origen, bool carpeta) {
    const std::string nombre = propio(origen);
    std::string candidato = nombre;
    for (unsigned n = 2; !usados.insert(candidato).second; ++n)
        candidato = numerado(nombre, n, carpeta);
    return candidato;
}

} // namespace orcalin
