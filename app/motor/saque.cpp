#include "saque.h"

#include "arranque.h"
#include "clave.h"
#include "copia.h"
#include "fondo.h"
#include "hueco.h"
#include "lineas.h"
#include "motor.h"
#include "principal.h"
#include "ruta.h"
#include "visor.h"

#include <QPointer>

#include <atomic>
#include <sys/stat.h>

// The engine may still be writing when nobody wants the copies any more. So its
// end holds this as well, and the last to let go cleans up, in the background.
struct Saque::Restos {
    QByteArray carpeta; // of this lot; empty when it could not be made
    QByteArray clave;
    std::atomic<bool> seQuedan = false;

    Restos() = default;
    Restos(const Restos &) = delete;
    Restos &operator=(const Restos &) = delete;
    ~Restos() {
        clave::quita(clave);
        if (!carpeta.isEmpty() && !seQuedan)
            visor::limpia(carpeta);
    }
};

Saque::Saque(QUrl archivo, QStringList rutas, qint64 bytes, std::optional<QString> contrasena)
    : m_archivo(std::move(archivo))
    , m_rutas(std::move(rutas))
    , m_bytes(bytes)
    , m_contrasena(std::move(contrasena)) {}

Saque::~Saque() {
    if (m_proceso)
        m_proceso->termina();
    if (m_restos)
        enFondo([restos = std::move(m_restos)] {});
}

void Saque::empieza(const EspacioLibre &libre) {
    const auto motor = Motor::binario();
    if (!motor)
        return acaba(sinMotor());
    if (const auto falta = hueco::falta(QStringLiteral("Para arrastrarlo"), m_bytes, libre))
        return acaba(*falta);
    const auto carpeta = visor::nuevaCarpeta(visor::carpeta());
    if (!carpeta)
        return acaba(visor::sinCarpeta());
    m_motor = *motor;
    m_restos = std::make_shared<Restos>();
    m_restos->carpeta = *carpeta;
    m_restos->clave = clave::escribe(m_contrasena);
    sacaOtra();
}

// A folder each: nothing of one entry stands in the way of another, and no link
// of one leads another astray.
QByteArray Saque::carpetaDe(qsizetype i) const {
    return m_restos->carpeta + '/' + QByteArray::number(i + 1);
}

void Saque::sacaOtra() {
    const qsizetype i = m_copias.size();
    if (i == m_rutas.size())
        return acaba({});
    const Extraccion extraccion{m_motor, m_archivo, carpetaDe(i), m_restos->clave};
    (void)::mkdir(extraccion.destino.constData(), S_IRWXU); // the engine says what is wrong
    m_proceso = std::make_unique<Proceso>(extraccion.orden(m_rutas[i]));
    auto alTerminar = [esta = QPointer(this), restos = m_restos,
                       ruta = m_rutas[i]](const Proceso::Final &fin) mutable {
        const QString dicho = lineas::primerError(
            lineas::texto(fin.error), QStringLiteral("No se pudo sacar «%1».").arg(ruta));
        enPrincipal([esta, estado = fin.estado, dicho] {
            if (esta)
                esta->acabaUna(estado, dicho);
        });
        restos.reset(); // before the child counts as ended: the application may wait for that
    };
    if (m_proceso->lanza({}, std::move(alTerminar)) != 0)
        acaba(noArranca());
}

// A part of a file would pass for the whole: unlike for viewing, the engine must
// also say that all went well.
void Saque::acabaUna(int estado, const QString &dicho) {
    const qsizetype i = m_copias.size();
    const auto copia = copia::busca(carpetaDe(i), m_rutas[i].toUtf8(), copia::Enlaces::Tal);
    if (estado != 0 || !copia)
        return acaba(dicho);
    m_copias.append(*copia);
    sacaOtra();
}

void Saque::acaba(const QString &fallo) {
    m_proceso.reset();
    m_fallo = fallo;
    m_fase = fallo.isEmpty() ? Fase::Listo : Fase::Fallido;
    if (m_restos)
        clave::quita(m_restos->clave);
    emit acabado();
}

QList<QUrl> Saque::urls() const {
    QList<QUrl> todas;
    if (!m_restos || m_fase == Fase::Fallido)
        return todas;
    todas.reserve(m_rutas.size());
    for (qsizetype i = 0; i < m_rutas.size(); ++i)
        todas.append(ruta::url(i < m_copias.size()
                                   ? m_copias[i]
                                   : copia::prevista(carpetaDe(i), m_rutas[i].toUtf8())));
    return todas;
}

void Saque::conserva() {
    if (m_restos && m_fase == Fase::Listo)
        m_restos->seQuedan = true;
}
