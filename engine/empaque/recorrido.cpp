#include "empaque/recorrido.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "empaque/clases.h"
#include "empaque/hijos.h"
#include "empaque/identidad.h"
#include "empaque/nombres.h"
#include "empaque/orden.h"
#include "indice/asiento.h"

#include <cerrno>
#include <fcntl.h>
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
    Recorrido(const FicheroProvisional &destinoDado, Origenes &carpetasDadas, Avisos &avisosDados)
        : destino(destinoDado)
        , carpetas(carpetasDadas)
        , avisos(avisosDados) {}

    void anade(const std::string &origen);
    Plan plan;

private:
    void visita(Pieza pieza, std::vector<Pieza> &pila);
    void apila(Pieza &carpeta, int madre, std::vector<Pieza> &pila);
    void falta(const std::string &que, const Pieza &pieza, int porque);
    std::uint64_t bytesDe(const struct stat &estado);

    const FicheroProvisional &destino;
    Origenes &carpetas;
    Avisos &avisos;
    Nombres nombres;
    std::set<Identidad> conVariosNombres;
};

void Recorrido::anade(const std::string &origen) {
    const std::string ruta = sinBarrasFinales(origen);
    const auto barra = ruta.rfind('/');
    Pieza pieza;
    pieza.propio = ruta == "/" ? "." : ruta.substr(barra + 1);
    // The slash of the root folder is its name.
    pieza.carpeta = carpetas.lugar(barra == 0                   ? "/"
                                   : barra == std::string::npos ? ""
                                                                : ruta.substr(0, barra));
    const int fd = carpetas.abre(pieza.carpeta);
    struct stat estado {};
    if (fd < 0 || fstatat(fd, pieza.propio.c_str(), &estado, AT_SYMLINK_NOFOLLOW) != 0)
        falla("no se puede guardar " + citado(ruta), errno);
    if (destino.es(fd, pieza.propio, estado))
        throw Fallo("el destino es también uno de los orígenes");
    pieza.nombre = nombres.para(ruta, S_ISDIR(estado.st_mode));
    std::vector<Pieza> pila;
    for (pila.push_back(std::move(pieza)); !pila.empty();) {
        Pieza siguiente = std::move(pila.back());
        pila.pop_back();
        visita(std::move(siguiente), pila);
    }
}

void Recorrido::visita(Pieza pieza, std::vector<Pieza> &pila) {
    if (pieza.nombre.size() > rutaMaxima)
        return falta("no se puede guardar ", pieza, ENAMETOOLONG);
    const int fd = carpetas.abre(pieza.carpeta);
    struct stat estado {};
    if (fd < 0 || fstatat(fd, pieza.propio.c_str(), &estado, AT_SYMLINK_NOFOLLOW) != 0)
        return falta("no se puede leer ", pieza, errno);
    pieza.clase = estado.st_mode & S_IFMT;
    pieza.inodo = estado.st_ino;
    pieza.bytes = bytesDe(estado);
    if (S_ISREG(estado.st_mode)) {
        pieza.trato = tratoDe(fd, pieza.propio, pieza.nombre, estado.st_mode, pieza.bytes);
    } else if (S_ISDIR(estado.st_mode)) {
        apila(pieza, fd, pila);
    } else if (!S_ISLNK(estado.st_mode)) {
        avisos.avisa("se omite " + citado(carpetas.ruta(pieza.carpeta, pieza.propio)) +
                     ": no es un fichero ni una carpeta");
        return;
    }
    plan.push_back(std::move(pieza));
}

void Recorrido::apila(Pieza &carpeta, int madre, std::vector<Pieza> &pila) {
    const Hijos hijos = hijosDe(madre, carpeta.propio, destino);
    carpeta.incompleta = hijos.porque != 0;
    if (carpeta.incompleta)
        falta("no se puede mirar dentro de ", carpeta, hijos.porque);
    else
        carpeta.inodo = hijos.inodo; // of what is mounted by looking into it, perhaps
    carpeta.huella = hijos.huella();
    if (hijos.nombres.empty())
        return;
    const auto numero = carpetas.dentro(carpeta.carpeta, carpeta.propio);
    // What is pushed last is visited first.
    for (auto hijo = hijos.nombres.rbegin(); hijo != hijos.nombres.rend(); ++hijo) {
        Pieza nueva;
        nueva.carpeta = numero;
        nueva.propio = *hijo;
        nueva.nombre = carpeta.nombre + "/" + *hijo;
        pila.push_back(std::move(nueva));
    }
}

void Recorrido::falta(const std::string &que, const Pieza &pieza, int porque) {
    const std::string queja = que + citado(carpetas.ruta(pieza.carpeta, pieza.propio));
    if (escasea(porque))
        falla(queja, porque);
    avisos.falta(queja + ": " + causa(porque));
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
            Origenes &carpetas, Avisos &avisos) {
    Recorrido recorrido(destino, carpetas, avisos);
    for (const auto &origen : origenes)
        recorrido.anade(origen);
    ordena(recorrido.plan);
    return std::move(recorrido.plan);
}

} // namespace orcalin
