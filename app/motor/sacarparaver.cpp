#include "arranque.h"
#include "clave.h"
#include "copia.h"
#include "extraccion.h"
#include "fondo.h"
#include "hueco.h"
#include "lineas.h"
#include "motor.h"
#include "principal.h"
#include "ruta.h"
#include "visor.h"

namespace {

// One opening on its way through the threads.
struct Apertura {
    QByteArray visor;
    Extraccion extraccion;
    QString ruta;
    std::optional<QString> contrasena;
    std::function<void(const Motor::Copia &)> hecho;
};

// The end of an opening that came to nothing.
void renuncia(Apertura &&apertura, const QString &porque) {
    enPrincipal([apertura = std::move(apertura), porque] { apertura.hecho(fallos::Otro{porque}); });
}

// The end of one that the engine has done; `siNo`: what to say where there is
// no copy.
void entrega(Apertura &&apertura, const QString &siNo) {
    enPrincipal([apertura = std::move(apertura), siNo] {
        const auto copia = copia::busca(apertura.extraccion.destino, apertura.ruta.toUtf8());
        if (!copia)
            return apertura.hecho(fallos::Otro{siNo});
        copia::protege(*copia);
        apertura.hecho(ruta::url(*copia));
    });
}

void saca(Apertura &&apertura) {
    const auto carpeta = visor::nuevaCarpeta(apertura.visor);
    if (!carpeta)
        return renuncia(std::move(apertura), visor::sinCarpeta());
    Extraccion &extraccion = apertura.extraccion;
    extraccion.destino = *carpeta;
    extraccion.clave = clave::escribe(apertura.contrasena);
    const auto corrida = Proceso::corre(extraccion.orden(apertura.ruta), Proceso::Lee::Error);
    if (corrida.fallo != 0) // the password file stays, as with every job
        return renuncia(std::move(apertura), noArranca());
    clave::quita(extraccion.clave);
    const QString generico = QStringLiteral("No se pudo abrir «%1».").arg(apertura.ruta);
    entrega(std::move(apertura), lineas::primerError(lineas::texto(corrida.error), generico));
}

} // namespace

void Motor::sacarParaVer(const QUrl &archivo, const QString &ruta, qint64 bytes,
                         const std::optional<QString> &contrasena,
                         std::function<void(const Copia &)> hecho, const EspacioLibre &libre) {
    const auto motor = binario();
    if (!motor) {
        hecho(fallos::Otro{sinMotor()});
        return;
    }
    if (const auto falta = hueco::falta(QStringLiteral("Para abrirlo"), bytes, libre)) {
        hecho(fallos::Otro{*falta});
        return;
    }
    Apertura apertura{
        visor::carpeta(), {*motor, archivo, {}, {}}, ruta, contrasena, std::move(hecho)};
    enFondo([apertura = std::move(apertura)]() mutable { saca(std::move(apertura)); });
}
