#include "arranque.h"
#include "clave.h"
#include "cronometro.h"
#include "descriptor.h"
#include "enmarcha.h"
#include "lineas.h"
#include "motor.h"
#include "principal.h"
#include "proceso.h"
#include "progreso.h"
#include "publicador.h"
#include "ruta.h"
#include "tamano.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace {

QList<QByteArray> argumentos(const QList<QUrl> &origenes, const QUrl &destino, bool maximo) {
    QList<QByteArray> todos{"compress"};
    for (const QUrl &origen : origenes)
        todos.append(ruta::nativa(origen));
    todos << "-o" << ruta::nativa(destino);
    if (maximo)
        todos << "--max";
    else
        todos << "--level"
              << "19";
    todos << "--progress";
    return todos;
}

// The archive counts with what can be read back from it, not with what the
// file system says of it; 0 when it cannot be read to its end. Block by block,
// since an archive may be larger than the memory.
qint64 bytesLegibles(const QUrl &destino) {
    const Descriptor fichero(
        ::open(ruta::nativa(destino).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat dato {};
    if (!fichero || ::fstat(fichero.numero(), &dato) != 0 || !S_ISREG(dato.st_mode))
        return 0;
    std::vector<char> bloque(1 << 20);
    qint64 suma = 0;
    ssize_t leido = 0;
    while ((leido = ::read(fichero.numero(), bloque.data(), bloque.size())) != 0) {
        if (leido < 0 && errno != EINTR)
            return 0;
        suma += std::max<ssize_t>(leido, 0);
    }
    return suma;
}

QString mensajeDeFallo(const QByteArray &error) {
    QString elegida = QStringLiteral("No se pudo guardar.");
    const QString texto = lineas::texto(error);
    for (const QStringView linea : lineas::separa(texto)) {
        if (linea.contains(u"Error") || linea.contains(u"error"))
            elegida = linea.toString();
    }
    return lineas::sinPrefijo(elegida);
}

} // namespace

// What the threads of one compression know of it.
struct Motor::Compresion {
    Publicador publicador;
    QUrl destino;
    QByteArray clave; // the password file, empty without one
    qint64 entrada = 0;
    Cronometro cronometro;
    EnMarcha::Turno turno = 0;

    void lee(const QByteArray &trozo) const {
        for (Trabajando &estado : progreso::leeTrozo(trozo, cronometro.segundos()))
            publicador.publica([estado = std::move(estado)] { return Estado(estado); });
    }

    void acaba(const Proceso::Final &fin) const {
        clave::quita(clave);
        std::optional<QString> fallo;
        if (fin.estado != 0)
            fallo = mensajeDeFallo(fin.error);
        const qint64 salida = bytesLegibles(destino);
        publicador.acaba(turno, [*this, salida, fallo] { return resultado(salida, fallo); });
    }

    Estado resultado(qint64 salida, const std::optional<QString> &fallo) const {
        if (fallo)
            return Error{*fallo};
        return Hecho{entrada, salida, cronometro.segundos(), destino};
    }
};

void Motor::comprimir(const QList<QUrl> &origenes, const QUrl &destino, bool maximo,
                      const std::optional<QString> &contrasena) {
    const auto motor = binario();
    if (!motor) {
        ponEstado(Error{
            QStringLiteral("No encuentro el motor «orcalin». Debería estar dentro de la app.")});
        return;
    }
    if (origenes.isEmpty())
        return;
    Compresion trabajo{Publicador(this), destino, {}, pesoDe(origenes), {}, 0};
    ponEstado(Trabajando{0, QStringLiteral("preparando…"), std::nullopt});

    Proceso::Orden orden{ruta::nativa(*motor), argumentos(origenes, destino, maximo)};
    trabajo.clave = clave::escribe(contrasena);
    if (!trabajo.clave.isEmpty())
        orden.argumentos << "--encrypt" << clave::argumentos(trabajo.clave);
    m_proceso = std::make_unique<Proceso>(std::move(orden));
    trabajo.cronometro.empieza();
    trabajo.turno = m_turno = EnMarcha::trabajos().entra({EnMarcha::Obra::Guardar, destino});
    const int fallo = m_proceso->lanza([trabajo](const QByteArray &t) { trabajo.lee(t); },
                                       [trabajo](const Proceso::Final &f) { trabajo.acaba(f); });
    if (fallo == 0)
        return;
    EnMarcha::trabajos().sale(m_turno);
    ponEstado(Error{QStringLiteral("No pude arrancar el motor: ") + motivoDeArranque(fallo)});
}
