#include "ordenes/ordenes.h"

#include "comun/avisos.h"
#include "comun/consola.h"
#include "comun/fallo.h"
#include "comun/marcha.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "saque/cotejo.h"
#include "saque/danos.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

namespace orcalin {
namespace {

/// Walks the whole stream and looks at every byte of it.
class Comprobacion {
public:
    explicit Comprobacion(const Archivo &archivoDado)
        : archivo(archivoDado) {}

    void recorre() {
        const auto indice = archivo.indice();
        LectorTar lector(indice ? archivo.tarComprobado(*indice) : archivo.tar());
        while (archive_entry *ficha = lector.siguiente()) {
            const Entrada entrada = describe(ficha);
            enCurso = entrada.ruta;
            const auto lugar = lector.posicion();
            leeContenido(lector);
            cotejo.enElFlujo(entrada, lugar);
            enCurso.clear();
            ++elementos;
        }
    }

    /// Whether the index, if there is one, tells what the stream holds. What it
    /// calls incomplete is missing to `avisos`.
    void comparaConElIndice(Avisos &avisos) {
        const auto indice = archivo.indiceSano();
        if (!indice)
            return;
        for (Asiento asiento; indice->siguiente(asiento);) {
            cotejo.enElIndice(asiento);
            if (asiento.incompleta)
                avisos.falta(citado(asiento.ruta) + ": se guardó incompleto");
        }
        if (!cotejo.coincide())
            throw Fallo("el índice no dice lo que hay en el archivo");
    }

    /// What was found sound, also after a failure.
    [[nodiscard]] std::string cuenta() const {
        return std::to_string(elementos) + (elementos == 1 ? " elemento, " : " elementos, ") +
               std::to_string(bytes) + " bytes";
    }

    /// The entry in which reading stopped; empty between two.
    [[nodiscard]] const std::string &dondeVa() const { return enCurso; }

private:
    void leeContenido(LectorTar &lector) {
        std::int64_t lugar = 0;
        for (Octetos trozo = lector.trozo(lugar); !trozo.empty(); trozo = lector.trozo(lugar))
            bytes += trozo.size();
    }

    const Archivo &archivo;
    Cotejo cotejo;
    std::string enCurso;
    std::uint64_t elementos = 0;
    std::uint64_t bytes = 0;
};

/// Tells what is lost; without an index, how far it went well. To be called
/// while the failure is being handled, which it throws again.
[[noreturn]] void cuentaElDano(const Archivo &archivo, const Comprobacion &comprobacion) {
    Avisos avisos;
    const auto rutas = entradasDanadas(archivo);
    for (const auto &ruta : rutas)
        avisos.avisa("dañado: " + citado(ruta));
    // The first frame's damage looks like no archive at all to the reader.
    if (!rutas.empty())
        throw Fallo("el archivo está dañado");
    avisos.avisa("sano hasta donde se ha podido leer: " + comprobacion.cuenta());
    if (!comprobacion.dondeVa().empty())
        avisos.avisa("dañado: " + citado(comprobacion.dondeVa()));
    throw;
}

} // namespace

void comprueba(const PedidoComprobar &pedido) {
    atiendeCancelacion("comprobación cancelada");
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    Comprobacion comprobacion(archivo);
    Avisos avisos;
    {
        const Marcha marcha("Comprobando", [&fichero = archivo.enElDisco()] {
            return Marcha::Punto{fichero.leidos(), fichero.largo()};
        });
        try {
            comprobacion.recorre();
        } catch (const Fallo &) {
            cuentaElDano(archivo, comprobacion);
        }
        comprobacion.comparaConElIndice(avisos);
    }
    avisos.remata("guardar bien");
    Salida salida;
    salida.linea("El archivo está sano: " + comprobacion.cuenta());
    salida.vacia();
}

} // namespace orcalin
