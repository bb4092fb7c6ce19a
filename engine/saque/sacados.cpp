#include "saque/sacados.h"

namespace orcalin {

std::string_view madreDe(std::string_view ruta) {
    const auto barra = ruta.rfind('/');
    return barra == std::string_view::npos ? std::string_view() : ruta.substr(0, barra);
}

std::string_view nombreDe(std::string_view ruta) {
    return ruta.substr(ruta.rfind('/') + 1);
}

void Sacados::anota(const std::string &ruta, Que que, const std::string &nombre, bool nuevo) {
    if (que != Que::carpeta)
        sacados.insert_or_assign(cifraDe(ruta), Sacado{que == Que::fichero, nuevo});
    if (nombre != nombreDe(ruta))
        otros.insert_or_assign(ruta, Otro{nombre, nuevo});
    if (!nuevo)
        return;
    algo = true;
    cuentaEnSusCarpetas(ruta);
}

/// A folder that was called otherwise by an earlier run is worth a word again
/// only if something comes into it.
void Sacados::cuentaEnSusCarpetas(std::string_view ruta) {
    if (otros.empty())
        return;
    for (ruta = madreDe(ruta); !ruta.empty(); ruta = madreDe(ruta))
        if (const auto carpeta = otros.find(ruta); carpeta != otros.end())
            carpeta->second.nuevo = true;
}

void Sacados::olvida(const std::string &ruta) {
    sacados.erase(cifraDe(ruta));
    otros.erase(ruta);
}

bool Sacados::esNuestro(std::string_view ruta) const {
    const auto sacado = sacados.find(cifraDe(ruta));
    return sacado != sacados.end() && sacado->second.nuestro;
}

bool Sacados::hayFichero(std::string_view ruta) const {
    const auto sacado = sacados.find(cifraDe(ruta));
    return sacado != sacados.end() && sacado->second.fichero;
}

std::string Sacados::nombre(std::string_view ruta) const {
    if (!otros.empty())
        if (const auto otro = otros.find(ruta); otro != otros.end())
            return otro->second.nombre;
    return std::string(nombreDe(ruta));
}

std::string Sacados::real(std::string_view ruta) const {
    const auto madre = madreDe(ruta);
    return madre.empty() ? nombre(ruta) : real(madre) + "/" + nombre(ruta);
}

std::vector<std::pair<std::string, std::string>> Sacados::renombrados() const {
    std::vector<std::pair<std::string, std::string>> pares;
    for (const auto &[ruta, otro] : otros)
        if (otro.nuevo)
            pares.emplace_back(ruta, real(ruta));
    return pares;
}

} // namespace orcalin
