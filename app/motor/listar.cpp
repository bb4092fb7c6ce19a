#include "arranque.h"
#include "clave.h"
#include "lineas.h"
#include "listado.h"
#include "motor.h"
#include "proceso.h"
#include "ruta.h"

namespace {

// A complaint about a password counts before any line that says "Error": it may
// stand in that very line.
FalloAlLeer fallo(const QString &dicho) {
    if (dicho.contains(QStringLiteral("contraseña")) || dicho.contains(QStringLiteral("password")))
        return fallos::PideContrasena{};
    return fallos::Otro{
        lineas::primerError(dicho, QStringLiteral("No se puede leer este archivo."))};
}

} // namespace

Motor::Listado Motor::listar(const QUrl &archivo, const std::optional<QString> &contrasena) {
    const auto motor = binario();
    if (!motor)
        return fallos::Otro{sinMotor()};
    const QByteArray clave = clave::escribe(contrasena);
    const QList<QByteArray> argumentos{"list", ruta::nativa(archivo)};
    const auto corrida = Proceso::corre(
        {ruta::nativa(*motor), argumentos + clave::argumentos(clave)}, Proceso::Lee::SalidaYError);
    if (corrida.fallo != 0)
        return fallos::Otro{noArranca()}; // the password file stays, as with every job
    clave::quita(clave);
    if (corrida.estado != 0)
        return fallo(lineas::texto(corrida.error));
    return leeListado(corrida.salida);
}
