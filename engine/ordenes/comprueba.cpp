#include "ordenes/ordenes.h"

#include "comun/avisos.h"
#include "comun/consola.h"
#include "comun/fallo.h"
#include "comun/marcha.h"
#include "comun/senales.h"
#include "comun/texto.h"
#include "saque/archivo.h"
#include "tar/entrada.h"
#include "tar/lector_tar.h"

namespace orcalin {
namespace {

/// Walks the whole stream and looks at every byte of it.
class Comprobacion {
public:
    explicit Comprobacion(const Archivo &archivo)
        : lector(archivo.tar()) {}

    void recorre() {
        while (archive_entry *ficha = lector.siguiente()) {
            enCurso = describe(ficha).ruta;
            leeContenido();
            enCurso.clear();
            ++elementos;
        }
    }

    /// What was found sound, also after a failure.
    [[nodiscard]] std::string cuenta() const {
        return std::to_string(elementos) + (elementos == 1 ? " elemento, " : " elementos, ") +
               std::to_string(bytes) + " bytes";
    }

    /// The entry in which reading stopped; empty between two.
    [[nodiscard]] const std::string &dondeVa() const { return enCurso; }

private:
    void leeContenido() {
        std::int64_t lugar = 0;
        for (Octetos trozo = lector.trozo(lugar); !trozo.empty(); trozo = lector.trozo(lugar))
            bytes += trozo.size();
    }

    LectorTar lector;
    std::string enCurso;
    std::uint64_t elementos = 0;
    std::uint64_t bytes = 0;
};

} // namespace

void comprueba(const PedidoComprobar &pedido) {
    atiendeCancelacion("comprobación cancelada");
    const Archivo archivo(pedido.archivo, pedido.ficheroContrasena);
    Comprobacion comprobacion(archivo);
    try {
        const Marcha marcha("Comprobando", [&fichero = archivo.enElDisco()] {
            return Marcha::Punto{fichero.leidos(), fichero.largo()};
        });
        comprobacion.recorre();
    } catch (const Fallo &) {
        Avisos avisos;
        avisos.avisa("sano hasta donde se ha podido leer: " + comprobacion.cuenta());
        if (!comprobacion.dondeVa().empty())
            avisos.avisa("el daño está en " + citado(comprobacion.dondeVa()));
        throw;
    }
    Salida salida;
    salida.linea("El archivo está sano: " + comprobacion.cuenta());
    salida.vacia();
}

} // namespace orcalin
