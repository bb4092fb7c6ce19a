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

FalloAlLeer noSePudo(const QString &ruta, const QString &dicho) {
    return fallos::Otro{
        lineas::primerError(dicho, QStringLiteral("No se pudo abrir «%1».").arg(ruta))};
}

// One opening on its way through the threads.
struct Apertura {
    QByteArray visor;
    Extraccion extraccion;
    QString ruta;
    std::optional<QString> contrasena;
    std::function<void(const Motor::Copia &)> hecho;
};

Motor::Copia resultado(const Apertura &apertura, const QString &dicho) {
    const auto copia = copia::busca(apertura.extraccion.destino, apertura.ruta.toUtf8());
    if (!copia)
        return noSePudo(apertura.ruta, dicho);
    copia::protege(*copia);
    return ruta::url(*copia);
}

// The end of an opening: what `hacer` makes of it on the main thread.
template<typename Hacer>
void entrega(Apertura &&apertura, Hacer hacer) {
    enPrincipal([apertura = std::move(apertura), hacer = std::move(hacer)] {
        apertura.hecho(hacer(apertura));
    });
}

void saca(Apertura &&apertura) {
    const auto carpeta = visor::nuevaCarpeta(apertura.visor);
    if (!carpeta)
        return entrega(std::move(apertura),
                       [](const Apertura &a) -> Motor::Copia { return noSePudo(a.ruta, {}); });
    Extraccion &extraccion = apertura.extraccion;
    extraccion.destino = *carpeta;
    extraccion.clave = clave::escribe(apertura.contrasena);
    const auto corrida = Proceso::corre(extraccion.orden(apertura.ruta), Proceso::Lee::Error);
    if (corrida.fallo != 0)
        return entrega(std::move(apertura), [](const Apertura &) -> Motor::Copia {
            return fallos::Otro{noArranca()}; // the password file stays, as with every job
        });
    clave::quita(extraccion.clave);
    entrega(std::move(apertura), [dicho = lineas::texto(corrida.error)](const Apertura &a) {
        return resultado(a, dicho);
    });
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
