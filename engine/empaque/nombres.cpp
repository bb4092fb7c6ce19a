#include "empaque/nombres.h"

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
    const std::filesystem::path nombre = propio(origen);
    const std::string extension = carpeta ? "" : nombre.extension().string();
    std::string tronco = nombre.string();
    tronco.resize(tronco.size() - extension.size());
    std::string candidato = nombre.string();
    for (int n = 2; !usados.insert(candidato).second; ++n) {
        candidato = tronco;
        candidato.append(" (").append(std::to_string(n)).append(")").append(extension);
    }
    return candidato;
}

} // namespace orcalin
