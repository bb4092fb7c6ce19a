#include "arranque.h"
#include "clave.h"
#include "cronometro.h"
#include "extraccion.h"
#include "fondo.h"
#include "lineas.h"
#include "motor.h"
#include "publicador.h"
#include "ruta.h"
#include "tamano.h"

#include <algorithm>

namespace {

// Names the entry in hand, while the fraction counts those that are done.
estados::Trabajando avance(qsizetype hechas, qsizetype total) {
    return {static_cast<double>(hechas) / static_cast<double>(total),
            QStringLiteral("recuperando %1 de %2…").arg(std::min(hechas + 1, total)).arg(total),
            std::nullopt};
}

// What a run says when it went wrong; none when it went well.
std::optional<QString> falloDe(int estado, const QByteArray &error, const QString &siNo) {
    if (estado == 0)
        return std::nullopt;
    return lineas::primerError(lineas::texto(error), siNo);
}

} // namespace

// What the threads of one extraction know of it.
struct Motor::Recuperacion {
    Publicador publicador;
    QUrl destino;
    Extraccion extraccion;
    Cronometro cronometro;
    EnMarcha::Turno turno = 0;

    void empieza() {
        turno = EnMarcha::trabajos().entra({EnMarcha::Obra::Recuperar, extraccion.archivo});
        cronometro.empieza();
    }

    // The end of the job: the message of its failure, or none.
    void publicaFinal(const std::optional<QString> &fallo) const {
        publicador.acaba(turno, [*this, fallo]() -> Estado {
            if (fallo)
                return Error{*fallo};
            const qint64 bytes = tamano(destino);
            return Hecho{bytes, bytes, cronometro.segundos(), destino};
        });
    }

    void acaba(const Proceso::Final &fin) const {
        clave::quita(extraccion.clave);
        publicaFinal(falloDe(fin.estado, fin.error, QStringLiteral("No se pudo recuperar.")));
    }

    [[nodiscard]] std::optional<QString> saca(const QString &ruta) const {
        const auto corrida = Proceso::corre(extraccion.orden(ruta), Proceso::Lee::Error);
        if (corrida.fallo != 0)
            return noArranca();
        return falloDe(corrida.estado, corrida.error,
                       QStringLiteral("No se pudo recuperar «%1».").arg(ruta));
    }

    void sacaUnaTrasOtra(const QStringList &rutas) const {
        std::optional<QString> fallo;
        for (qsizetype hechas = 0; hechas < rutas.size() && !fallo;) {
            fallo = saca(rutas[hechas++]);
            if (!fallo)
                publicador.publica(
                    [hechas, total = rutas.size()] { return Estado(avance(hechas, total)); });
        }
        clave::quita(extraccion.clave);
        publicaFinal(fallo);
    }
};

void Motor::recuperarVarios(const QUrl &archivo, const QUrl &destino, const QStringList &rutas,
                            const std::optional<QString> &contrasena) {
    if (rutas.isEmpty()) {
        recuperar(archivo, destino, std::nullopt, contrasena);
        return;
    }
    const auto motor = binario();
    if (!motor) {
        ponEstado(Error{sinMotor()});
        return;
    }
    Recuperacion trabajo{Publicador(this),
                         destino,
                         {*motor, archivo, ruta::nativa(destino), clave::escribe(contrasena)},
                         {},
                         0};
    ponEstado(avance(0, rutas.size()));
    trabajo.empieza();
    enFondo([trabajo, rutas] { trabajo.sacaUnaTrasOtra(rutas); });
}

void Motor::recuperar(const QUrl &archivo, const QUrl &destino,
                      const std::optional<QString> &patron,
                      const std::optional<QString> &contrasena) {
    const auto motor = binario();
    if (!motor) {
        ponEstado(Error{sinMotor()});
        return;
    }
    ponEstado(
        Trabajando{0, patron ? QStringLiteral("recuperando…") : QStringLiteral("recuperando todo…"),
                   std::nullopt});
    Recuperacion trabajo{Publicador(this),
                         destino,
                         {*motor, archivo, ruta::nativa(destino), clave::escribe(contrasena)},
                         {},
                         0};
    Proceso hijo(trabajo.extraccion.orden(patron));
    trabajo.empieza();
    const int fallo = hijo.lanza({}, [trabajo](const Proceso::Final &fin) { trabajo.acaba(fin); });
    if (fallo == 0)
        return;
    EnMarcha::trabajos().sale(trabajo.turno);
    ponEstado(Error{noArranca()});
}
