#include "saque/extraccion.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "saque/fallo_de_entrada.h"

#include <algorithm>
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

using Pares = std::vector<std::pair<std::string, std::string>>;

void cuentaLosOtrosNombres(const Pares &pares, Avisos &avisos) {
    constexpr std::size_t cuantosSeDicen = 20;
    for (std::size_t i = 0; i < std::min(cuantosSeDicen, pares.size()); ++i)
        avisos.avisa(citado(pares[i].first) + " sale como " + citado(pares[i].second) +
                     ": lo que había se queda");
    if (pares.size() == 1)
        avisos.avisa("1 salió con otro nombre");
    else if (!pares.empty())
        avisos.avisa(std::to_string(pares.size()) + " salieron con otro nombre");
}

} // namespace

Extraccion::Extraccion(const Archivo &archivoDado, std::string rutaPedida, Avisos &avisosDados,
                       std::filesystem::path destinoDado, bool reemplazaDado)
    : archivo(archivoDado)
    , pedida(std::move(rutaPedida))
    , avisos(avisosDados)
    , destino(std::move(destinoDado))
    , reemplaza(reemplazaDado) {}

bool Extraccion::saca() {
    const bool todo = pedida.empty();
    if (todo && !archivo.indice())
        avisaSinIndice(avisos);
    try {
        if (todo || !porIndice())
            recorre();
    } catch (...) {
        acaba(false);
        throw;
    }
    acaba(true);
    return algo;
}

Disco &Extraccion::disco() {
    if (!escritor)
        escritor.emplace(destino.abre(), reemplaza);
    return *escritor;
}

/// What came out gets its last attributes, however it ended, and those who wait
/// for it are told where it is.
void Extraccion::acaba(bool leido) {
    if (!escritor)
        return;
    escritor->acaba(leido);
    if (escritor->incompleta())
        avisos.avisa("alguna carpeta ha salido sin todos sus atributos");
    cuentaLosOtrosNombres(escritor->sacados().renombrados(), avisos);
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
    const std::string suyo = fichero(entrada.enlace);
    if (!disco().sacados().hayFichero(suyo)) {
        pendientes[suyo].push_back(entrada.ruta);
        return;
    }
    try {
        disco().enlaza(entrada.ruta, suyo);
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
                disco().saca(lector, ficha, entrada, como);
            else
                disco().enlaza(como, *escrito);
            cuenta(como);
            escrito = escrito == nullptr ? &como : escrito;
        } catch (const FalloDeEntrada &fallo) {
            falta(como, fallo.what());
        }
    }
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
    if (escritor->incompleta())
        avisos.avisa(citado(ruta) + " ha salido sin todos sus atributos");
}

void Extraccion::falta(const std::string &ruta, const std::string &porque) {
    avisos.falta(citado(ruta) + ": " + porque);
}

} // namespace orcalin
