#include "saque/hermanos.h"

#include "comun/numerado.h"

#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <memory>

namespace orcalin {
namespace {

constexpr const char *deFichero = "";
constexpr const char *deCarpetas = "/";

struct Cierra {
    void operator()(DIR *carpeta) const { closedir(carpeta); }
};

/// The number that `tronco` ends with, which is cut off; 0 if there is none.
unsigned cortaNumero(std::string_view &tronco) {
    const auto abre = tronco.rfind(" (");
    if (abre == std::string_view::npos || !tronco.ends_with(')'))
        return 0;
    const auto cifras = tronco.substr(abre + 2, tronco.size() - abre - 3);
    unsigned numero = 0;
    const auto [fin, error] = std::from_chars(cifras.data(), cifras.data() + cifras.size(), numero);
    if (error != std::errc() || fin != cifras.data() + cifras.size() || cifras.starts_with('0'))
        return 0;
    tronco.remove_suffix(tronco.size() - abre);
    return numero;
}

} // namespace

const std::set<unsigned> &Hermanos::numeros(const CarpetaAbierta &carpeta,
                                            const std::string &nombre, bool deCarpeta) {
    if (leida != carpeta)
        lee(carpeta);
    static const std::set<unsigned> ninguno;
    const auto hallados = usados.find(nombre + (deCarpeta ? deCarpetas : deFichero));
    return hallados == usados.end() ? ninguno : hallados->second;
}

void Hermanos::lee(const CarpetaAbierta &carpeta) {
    leida = carpeta;
    usados.clear();
    // A descriptor of its own, since reading moves it.
    const int propio = openat(carpeta->fd.numero(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, Cierra> abierta(propio < 0 ? nullptr : fdopendir(propio));
    while (const dirent *hijo = abierta ? readdir(abierta.get()) : nullptr) {
        const std::string_view nombre = hijo->d_name;
        apunta(nombre, lugarDeLaExtension(nombre), deFichero);
        apunta(nombre, nombre.size(), deCarpetas);
    }
}

void Hermanos::apunta(std::string_view nombre, std::size_t tronco, const char *marca) {
    auto sinNumero = nombre.substr(0, tronco);
    if (const auto numero = cortaNumero(sinNumero); numero > 1)
        usados[std::string(sinNumero).append(nombre.substr(tronco)).append(marca)].insert(numero);
}

} // namespace orcalin
