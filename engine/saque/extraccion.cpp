#include "saque/extraccion.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "saque/fallo_de_entrada.h"
#include "saque/marcos.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <unordered_set>
#include <utility>

namespace orcalin {
namespace {

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
    try {
        if (!porIndice())
            recorre(nullptr);
    } catch (...) {
        acaba(false);
        throw;
    }
    acaba(true);
    if (!pero.empty() && avisos.faltas() == 0)
        throw Fallo(pero);
    if (!pero.empty())
        avisos.avisa(pero);
    return algo;
}

void Extraccion::vuelca() const {
    if (escritor)
        escritor->vuelca();
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
    for (const auto &[ruta, permisos] : deCamino)
        escritor->permite(ruta, permisos);
    escritor->acaba(leido);
    if (escritor->incompleta())
        avisos.avisa("alguna carpeta ha salido sin todos sus atributos");
    cuentaLosOtrosNombres(escritor->sacados().renombrados(), avisos);
}

/// False if the index is of no help: there is none, or not of this archive.
bool Extraccion::porIndice() {
    const auto indice = archivo.indice();
    try {
        if (indice && Marcos::caben(*indice)) {
            mapa.emplace(*indice, pedida);
            if (!pedida.empty())
                cumple(*indice);
        }
    } catch (const FalloDeDisco &) {
        throw;
    } catch (const Fallo &) {
        // The stream has it all, and tells what is wrong with the archive itself.
        mapa.reset();
    }
    if (!mapa)
        avisaSinIndice(avisos);
    else if (pedida.empty())
        recorre(indice.get());
    return mapa.has_value();
}

void Extraccion::recorre(const Indice *indice) {
    Pasada pasada(archivo, indice, mapa ? &*mapa : nullptr);
    try {
        primeraLectura(pasada);
    } catch (const FalloDeDisco &) {
        throw;
    } catch (const Fallo &) {
        if (!enCurso.empty())
            avisos.avisa("dañado: " + citado(enCurso));
        throw;
    }
    if (pasada.danada())
        pero = "el archivo está dañado";
    else if (mapa && !mapa->cotejo().coincide())
        pero = "el índice no dice lo que hay en el archivo";
    cuentaLoPerdido(pasada);
    if (!pendientes.empty())
        segundaLectura(indice);
    for (const auto &[enlace, rutas] : pendientes)
        for (const auto &ruta : rutas)
            falta(ruta, "enlaza con " + citado(enlace) + ", que no está en el archivo");
}

void Extraccion::primeraLectura(Pasada &pasada) {
    pasada.recorre([this](LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
                          std::uint64_t lugar) {
        if (mapa)
            mapa->cotejo().enElFlujo(entrada, lugar);
        if (entrada.tipo == 'h')
            enlaces[entrada.ruta] = entrada.enlace;
        if (entrada.tipo == 'd' && entrada.ruta != pedida && esDe(pedida, entrada.ruta))
            deCamino.emplace_back(entrada.ruta, entrada.permisos);
        // The root's own entry is the destination folder, which is the user's.
        if (entrada.ruta.empty() || (!pedida.empty() && !esDe(entrada.ruta, pedida)))
            return;
        algo = true;
        enCurso = entrada.ruta;
        sacaEntrada(lector, ficha, entrada);
        enCurso.clear();
    });
}

/// By the index, which has the permissions of lost folders, too.
void Extraccion::cuentaLoPerdido(const Pasada &pasada) {
    const auto &tramos = pasada.perdidos();
    const auto indice = tramos.empty() ? nullptr : archivo.indice();
    const auto perdido = [&tramos](std::uint64_t lugar) {
        const auto tras = std::upper_bound(
            tramos.begin(), tramos.end(), lugar,
            [](std::uint64_t uno, const Pasada::Tramo &tramo) { return uno < tramo.hasta; });
        return tras != tramos.end() && lugar >= tras->desde;
    };
    std::unordered_set<std::string> rutas;
    for (Asiento asiento; indice && indice->siguiente(asiento);) {
        if (!perdido(asiento.lugar) && !(asiento.tipo == 'h' && perdido(asiento.enlazado)))
            continue;
        danada(asiento.ruta);
        rutas.insert(asiento.ruta);
        if (asiento.tipo == 'd')
            deCamino.emplace_back(asiento.ruta, asiento.permisos);
    }
    for (auto i = pendientes.begin(); i != pendientes.end();) {
        std::erase_if(i->second, [&rutas](const auto &ruta) { return rutas.contains(ruta); });
        i = i->second.empty() ? pendientes.erase(i) : std::next(i);
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

void Extraccion::segundaLectura(const Indice *indice) {
    Pasada pasada(archivo, indice, mapa ? &*mapa : nullptr);
    pasada.recorre([this](LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
                          std::uint64_t /*lugar*/) {
        const auto pendiente = pendientes.find(entrada.ruta);
        if (entrada.tipo != '-' || pendiente == pendientes.end())
            return;
        saca(lector, ficha, entrada, pendiente->second);
        pendientes.erase(pendiente);
    });
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

/// A link to a link leads on. What was passed leads to the end from then on, so
/// that no way is gone twice; and a circle, which has none, ends where it closes.
std::string Extraccion::fichero(std::string enlace) {
    std::unordered_set<std::string *> camino;
    auto siguiente = enlaces.find(enlace);
    while (siguiente != enlaces.end() && siguiente->second != enlace &&
           camino.insert(&siguiente->second).second) {
        enlace = siguiente->second;
        siguiente = enlaces.find(enlace);
    }
    for (auto *paso : camino)
        *paso = enlace;
    return enlace;
}

void Extraccion::cuenta(const std::string &ruta) {
    if (escritor->incompleta())
        avisos.avisa(citado(ruta) + " ha salido sin todos sus atributos");
    if (mapa && mapa->incompleta(ruta))
        falta(ruta, "se guardó incompleto");
}

void Extraccion::danada(const std::string &ruta) {
    avisos.falta("dañado: " + citado(ruta));
}

void Extraccion::falta(const std::string &ruta, const std::string &porque) {
    avisos.falta(citado(ruta) + ": " + porque);
}

} // namespace orcalin
