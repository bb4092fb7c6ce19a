#include "saque/extraccion.h"

#include "comun/texto.h"
#include "saque/fallo_de_entrada.h"

#include <utility>

namespace orcalin {

Extraccion::Extraccion(const Archivo &archivoDado, std::string rutaPedida, Avisos &avisosDados)
    : archivo(archivoDado)
    , pedida(std::move(rutaPedida))
    , avisos(avisosDados) {}

bool Extraccion::saca() {
    primeraLectura();
    if (!pendientes.empty())
        segundaLectura();
    for (const auto &[enlace, ruta] : pendientes)
        falta(ruta, "enlaza con " + citado(enlace) + ", que no está en el archivo");
    disco.acaba();
    if (disco.incompleta())
        avisos.avisa("alguna carpeta ha salido sin todos sus atributos");
    return algo;
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
    try {
        if (entrada.tipo == 'h') {
            const std::string destino = fichero(entrada.enlace);
            if (!sacados.contains(destino)) {
                pendientes.emplace(destino, entrada.ruta);
                return;
            }
            disco.enlaza(ficha, entrada.ruta, destino);
        } else {
            disco.saca(lector, ficha, entrada, entrada.ruta);
        }
        if (entrada.tipo == '-')
            sacados.insert(entrada.ruta);
        if (disco.incompleta())
            avisos.avisa(citado(entrada.ruta) + " ha salido sin todos sus atributos");
    } catch (const FalloDeEntrada &fallo) {
        falta(entrada.ruta, fallo.what());
    }
}

void Extraccion::segundaLectura() {
    LectorTar lector(archivo.tar());
    while (archive_entry *ficha = lector.siguiente()) {
        const Entrada entrada = describe(ficha);
        if (entrada.tipo == '-' && pendientes.contains(entrada.ruta))
            sacaPendientes(lector, ficha, entrada);
    }
}

void Extraccion::sacaPendientes(LectorTar &lector, archive_entry *ficha, const Entrada &entrada) {
    std::string escrito;
    const auto [primero, ultimo] = pendientes.equal_range(entrada.ruta);
    for (auto i = primero; i != ultimo; ++i) {
        try {
            if (escrito.empty())
                disco.saca(lector, ficha, entrada, i->second);
            else
                disco.enlaza(ficha, i->second, escrito);
            if (escrito.empty())
                escrito = i->second;
        } catch (const FalloDeEntrada &fallo) {
            falta(i->second, fallo.what());
        }
    }
    pendientes.erase(entrada.ruta);
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

void Extraccion::falta(const std::string &ruta, const std::string &porque) {
    avisos.falta(citado(ruta) + ": " + porque);
}

} // namespace orcalin
