#include "saque/pasada.h"

#include "comun/fallo.h"
#include "saque/marcos.h"

#include <numeric>

namespace orcalin {

Pasada::Pasada(const Archivo &archivoDado, const Indice *indiceDado, const Mapa *mapaDado)
    : archivo(archivoDado)
    , indice(indiceDado)
    , mapa(mapaDado) {}

void Pasada::recorre(const Cada &cada) {
    if (indice == nullptr) {
        LectorTar lector(archivo.tar());
        return recorre(lector, 0, cada);
    }
    std::vector<std::size_t> todos(indice->marcos().size());
    std::iota(todos.begin(), todos.end(), 0);
    Marcos marcos(archivo, *indice, std::move(todos));
    for (std::uint64_t lugar = 0; lugar < indice->fin().desde;) {
        try {
            LectorTar lector(marcos.desde(lugar));
            return recorre(lector, lugar, cada);
        } catch (const MarcoDanado &danado) {
            const auto &marco = indice->marcos()[danado.marco];
            lugar = mapa->siguiente(marco.desde + indice->crudoDe(danado.marco));
            huboDano = true;
            if (mapa->siguiente(sinLeer) < lugar)
                tramos.push_back({sinLeer, lugar});
            sinLeer = lugar;
        }
    }
}

void Pasada::recorre(LectorTar &lector, std::uint64_t origen, const Cada &cada) {
    bool vaAtinada = origen == 0; // what is read begins where an entry does
    while (archive_entry *ficha = lector.siguiente()) {
        const Entrada entrada = describe(ficha);
        sinLeer = origen + lector.posicion();
        if (!vaAtinada && !mapa->esta(entrada.ruta, sinLeer))
            throw Fallo("el índice no es de este archivo");
        vaAtinada = true;
        cada(lector, ficha, entrada, sinLeer);
        ++sinLeer;
    }
}

} // namespace orcalin
