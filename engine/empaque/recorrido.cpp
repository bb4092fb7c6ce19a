#include "empaque/recorrido.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "empaque/clases.h"
#include "empaque/identidad.h"
#include "empaque/nombres.h"
#include "empaque/orden.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <utility>

namespace orcalin {
namespace {

std::string sinBarrasFinales(std::string ruta) {
    while (ruta.size() > 1 && ruta.back() == '/')
        ruta.pop_back();
    return ruta;
}

class Recorrido {
public:
    Recorrido(const FicheroProvisional &destinoDado, Avisos &avisosDados)
        : destino(destinoDado)
        , avisos(avisosDados) {}

    void anade(const std::string &origen);
    Plan plan;

private:
    void visita(Pieza pieza, std::vector<Pieza> &pila);
    void apila(Pieza &carpeta, std::vector<Pieza> &pila);
    std::uint64_t bytesDe(const struct stat &estado);

    const FicheroProvisional &destino;
    Avisos &avisos;
    Nombres nombres;
    std::set<Identidad> conVariosNombres;
};

void Recorrido::anade(const std::string &origen) {
    const std::string ruta = sinBarrasFinales(origen);
    struct stat estado {};
    if (lstat(ruta.c_str(), &estado) != 0)
        falla("no se puede guardar " + citado(ruta), errno);
    if (destino.es(std::filesystem::path(ruta).filename(), estado))
        throw Fallo("el destino es también uno de los orígenes");
    std::vector<Pieza> pila;
    visita({ruta, nombres.para(ruta, S_ISDIR(estado.st_mode)), 0, 0}, pila);
    while (!pila.empty()) {
        Pieza pieza = std::move(pila.back());
        pila.pop_back();
        visita(std::move(pieza), pila);
    }
}

void Recorrido::visita(Pieza pieza, std::vector<Pieza> &pila) {
    struct stat estado {};
    if (lstat(pieza.origen.c_str(), &estado) != 0) {
        avisos.falta("no se puede leer " + citado(pieza.origen) + ": " + causa(errno));
        return;
    }
    if (destino.es(std::filesystem::path(pieza.origen).filename(), estado))
        return;
    pieza.clase = estado.st_mode & S_IFMT;
    pieza.bytes = bytesDe(estado);
    if (S_ISDIR(estado.st_mode)) {
        apila(pieza, pila);
    } else if (!S_ISREG(estado.st_mode) && !S_ISLNK(estado.st_mode)) {
        avisos.avisa("se omite " + citado(pieza.origen) + ": no es un fichero ni una carpeta");
        return;
    }
    if (S_ISREG(estado.st_mode))
        pieza.trato = tratoDe(pieza.origen, estado.st_mode, pieza.bytes);
    plan.push_back(std::move(pieza));
}

void Recorrido::apila(Pieza &carpeta, std::vector<Pieza> &pila) {
    std::vector<std::string> hijos;
    std::error_code error;
    std::filesystem::directory_iterator actual(carpeta.origen, error);
    for (; !error && actual != std::filesystem::directory_iterator(); actual.increment(error))
        hijos.push_back(actual->path().filename());
    const std::string queja = "no se puede mirar dentro de " + citado(carpeta.origen);
    if (escasea(error.value()))
        falla(queja, error.value());
    carpeta.incompleta = static_cast<bool>(error);
    if (error)
        avisos.falta(queja + ": " + causa(error.value()));
    // What is pushed last is visited first.
    std::sort(hijos.rbegin(), hijos.rend());
    const std::string base = carpeta.origen == "/" ? "/" : carpeta.origen + "/";
    const std::string nombre = carpeta.nombre + "/";
    for (const auto &hijo : hijos)
        pila.push_back({base + hijo, nombre + hijo, 0, 0});
}

std::uint64_t Recorrido::bytesDe(const struct stat &estado) {
    if (!S_ISREG(estado.st_mode))
        return 0;
    const bool repetido =
        estado.st_nlink > 1 && !conVariosNombres.insert(identidadDe(estado)).second;
    return repetido ? 0 : static_cast<std::uint64_t>(estado.st_size);
}

} // namespace

std::uint64_t bytesPrevistos(const Plan &plan) {
    constexpr std::uint64_t bloque = 512;
    std::uint64_t total = 0;
    // A header, and the content up to the end of its last block.
    for (const auto &pieza : plan)
        total += bloque + (pieza.bytes + bloque - 1) / bloque * bloque;
    return total;
}

Plan planea(const std::vector<std::string> &origenes, const FicheroProvisional &destino,
            Avisos &avisos) {
    Recorrido recorrido(destino, avisos);
    for (const auto &origen : origenes)
        recorrido.anade(origen);
    ordena(recorrido.plan);
    return std::move(recorrido.plan);
}

} // namespace orcalin
