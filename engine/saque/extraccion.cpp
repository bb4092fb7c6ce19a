#include "saque/extraccion.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "saque/fallo_de_entrada.h"

#include <optional>
#include <utility>

namespace orcalin {
namespace {

/// The stream has something else where the index has an entry.
class IndiceFalso : public Fallo {
public:
    IndiceFalso()
        : Fallo("el índice no es de este archivo") {}
};

} // namespace

Extraccion::Extraccion(const Archivo &archivoDado, std::string rutaPedida, Avisos &avisosDados)
    : archivo(archivoDado)
    , pedida(std::move(rutaPedida))
    , avisos(avisosDados) {}

bool Extraccion::saca() {
    const bool todo = pedida.empty();
    if (todo && !archivo.indice())
        avisaSinIndice(avisos);
    if (todo || !porIndice())
        recorre();
    disco.acaba();
    if (disco.incompleta())
        avisos.avisa("alguna carpeta ha salido sin todos sus atributos");
    return algo;
}

/// False if the index is of no help: there is none, or not of this archive.
bool Extraccion::porIndice() {
    try {
        const auto indice = archivo.indice();
        if (indice) {
            const auto encargos = busca(*indice);
            cumple(*indice, encargos);
            return true;
        }
    } catch (const IndiceFalso &) {
    }
    avisaSinIndice(avisos);
    return false;
}

Extraccion::Encargos Extraccion::busca(Indice &indice) {
    Encargos encargos;
    std::vector<std::pair<std::uint64_t, std::string>> ligados;
    try {
        for (Asiento asiento; indice.siguiente(asiento);) {
            if (!esDe(asiento.ruta, pedida))
                continue;
            if (asiento.tipo == 'h')
                ligados.emplace_back(asiento.enlazado, asiento.ruta);
            else if (!std::exchange(encargos[asiento.lugar].conElla, true))
                encargos[asiento.lugar].comos.push_back(asiento.ruta);
            else
                throw IndiceFalso();
        }
    } catch (const Fallo &) {
        throw IndiceFalso();
    }
    for (auto &[lugar, ruta] : ligados)
        encargos[lugar].comos.push_back(std::move(ruta));
    return encargos;
}

void Extraccion::cumple(const Indice &indice, const Encargos &encargos) {
    std::optional<LectorTar> lector;
    std::uint64_t origen = 0; // of what `lector` reads
    for (auto i = encargos.begin(); i != encargos.end();) {
        const auto lugar = i->first;
        // Reading on is worth it only as far as the frame goes.
        if (!lector || indice.marcoDe(lugar) > indice.marcoDe(origen + lector->posicion())) {
            lector.emplace(archivo.tarDesde(indice, lugar));
            origen = lugar;
        }
        archive_entry *ficha = lector->siguiente();
        if (ficha == nullptr || origen + lector->posicion() > lugar)
            throw IndiceFalso();
        if (origen + lector->posicion() < lugar)
            continue;
        const Entrada entrada = describe(ficha);
        const auto &[conElla, comos] = i->second;
        if (conElla ? entrada.ruta != comos.front() : entrada.tipo != '-')
            throw IndiceFalso();
        saca(*lector, ficha, entrada, comos);
        ++i;
    }
    algo = !encargos.empty();
}

void Extraccion::recorre() {
    primeraLectura();
    if (!pendientes.empty())
        segundaLectura();
    for (const auto &[enlace, rutas] : pendientes)
        for (const auto &ruta : rutas)
            falta(ruta, "enlaza con " + citado(enlace) + ", que no está en el archivo");
}

void Extraccion::primeraLectura() {
    LectorTar lector(archivo.tar());
    while (archive_entry *ficha = lector.siguiente()) {
        const Entrada entrada = describe(ficha);
        if (entrada.tipo == 'h')
            enlaces[entrada.ruta] = entrada.enlace;
        // The root's own entry is the destination folder, which is the user's.
        if (entrada.ruta.empty() || (!pedida.empty() && !esDe(entrada.ruta, pedida)))
            continue;
        algo = true;
        sacaEntrada(lector, ficha, entrada);
    }
}

void Extraccion::sacaEntrada(LectorTar &lector, archive_entry *ficha, const Entrada &entrada) {
    if (entrada.tipo != 'h')
        return saca(lector, ficha, entrada, {entrada.ruta});
    const std::string destino = fichero(entrada.enlace);
    if (!sacados.contains(destino)) {
        pendientes[destino].push_back(entrada.ruta);
        return;
    }
    try {
        disco.enlaza(ficha, entrada.ruta, destino);
        cuenta(entrada.ruta);
    } catch (const FalloDeEntrada &fallo) {
        falta(entrada.ruta, fallo.what());
    }
}

void Extraccion::segundaLectura() {
    LectorTar lector(archivo.tar());
    while (archive_entry *ficha = lector.siguiente()) {
        const Entrada entrada = describe(ficha);
        const auto pendiente = pendientes.find(entrada.ruta);
        if (entrada.tipo != '-' || pendiente == pendientes.end())
            continue;
        saca(lector, ficha, entrada, pendiente->second);
        pendientes.erase(pendiente);
    }
}

void Extraccion::saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
                      const std::vector<std::string> &comos) {
    const std::string *escrito = nullptr;
    for (const auto &como : comos) {
        try {
            if (escrito == nullptr)
                disco.saca(lector, ficha, entrada, como);
            else
                disco.enlaza(ficha, como, *escrito);
            cuenta(como);
            escrito = escrito == nullptr ? &como : escrito;
        } catch (const FalloDeEntrada &fallo) {
            falta(como, fallo.what());
        }
    }
    if (escrito != nullptr && entrada.tipo == '-')
        sacados.insert(*escrito);
}

std::string Extraccion::fichero(std::string enlace) const {
    // A link to a link; no more steps than links, in case they go in a circle.
    auto siguiente = enlaces.find(enlace);
    for (std::size_t n = 0; n < enlaces.size() && siguiente != enlaces.end(); ++n) {
        enlace = siguiente->second;
        siguiente = enlaces.find(enlace);
    }
    return enlace;
}

void Extraccion::cuenta(const std::string &ruta) {
    if (disco.incompleta())
        avisos.avisa(citado(ruta) + " ha salido sin todos sus atributos");
}

void Extraccion::falta(const std::string &ruta, const std::string &porque) {
    avisos.falta(citado(ruta) + ": " + porque);
}

} // namespace orcalin
