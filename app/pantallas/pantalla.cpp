#include "pantalla.h"

#include "escritorio/escritorio.h"
#include "motor/fondo.h"
#include "motor/principal.h"
#include "motor/ruta.h"
#include "motor/tamano.h"
#include "revelar.h"

#include <QPointer>

#include <algorithm>
#include <sys/stat.h>

Pantalla::Pantalla(QList<QUrl> inicial, Escritorio &escritorio, QObject *padre)
    : QObject(padre)
    , m_inicial(std::move(inicial))
    , m_escritorio(escritorio)
    , m_seguimiento(m_motor, escritorio, [this] { return final(m_motor.estado(), m_escritorio); }) {
    connect(&m_motor, &Motor::estadoCambia, this, &Pantalla::estadoCambia);
    connect(this, &Pantalla::origenesCambian, this, &Pantalla::puedeGuardarCambia);
    connect(this, &Pantalla::opcionesCambian, this, &Pantalla::puedeGuardarCambia);
}

Pantalla::~Pantalla() {
    m_medida.request_stop();
}

void Pantalla::aparece() {
    if (m_arrancado || m_inicial.isEmpty())
        return;
    m_arrancado = true;
    ponOrigenes(m_inicial);
}

bool Pantalla::arrastreEntra(const QList<QUrl> &urls) {
    const bool hayFicheros =
        std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
    ponEncima(hayFicheros);
    return hayFicheros;
}

void Pantalla::arrastreSale() {
    ponEncima(false);
}

void Pantalla::suelta(const QList<QUrl> &urls) {
    ponEncima(false);
    QList<QUrl> recogidos;
    std::copy_if(urls.begin(), urls.end(), std::back_inserter(recogidos),
                 [](const QUrl &url) { return url.isLocalFile(); });
    if (recogidos.isEmpty())
        return;
    if (recogidos.size() == 1 && ruta::esArchivo(recogidos.first())) {
        emit abreArchivo(recogidos.first());
        return;
    }
    std::stable_sort(recogidos.begin(), recogidos.end(), [](const QUrl &a, const QUrl &b) {
        return ruta::nativa(a) < ruta::nativa(b);
    });
    ponOrigenes(std::move(recogidos));
}

// While a panel of the desktop is open, another screen can take the place of
// this one.
void Pantalla::elegir() {
    const QPointer esta(this);
    QList<QUrl> elegidos = m_escritorio.eligeOrigenes();
    if (esta && !elegidos.isEmpty())
        ponOrigenes(std::move(elegidos));
}

void Pantalla::guardar() {
    if (m_origenes.isEmpty())
        return;
    const QPointer esta(this);
    const auto destino = m_escritorio.eligeDestino(nombrePropuesto());
    if (!esta || !destino)
        return;
    m_motor.comprimir(m_origenes, *destino, m_maximo,
                      m_cifrar ? std::optional(m_contrasena) : std::nullopt);
}

void Pantalla::cancelar() {
    m_motor.cancelar();
}

void Pantalla::revela() {
    if (const auto *hecho = std::get_if<Motor::Hecho>(&m_motor.estado()))
        revelaOAvisa(m_escritorio, hecho->ruta);
}

void Pantalla::otraCosa() {
    m_motor.ponEstado(Motor::Reposo{});
    ponOrigenes({});
}

void Pantalla::volver() {
    m_motor.ponEstado(Motor::Reposo{});
}

bool Pantalla::esCarpeta(const QUrl &url) {
    struct stat dato {};
    return ::lstat(ruta::nativa(url).constData(), &dato) == 0 && S_ISDIR(dato.st_mode);
}

void Pantalla::ponEncima(bool encima) {
    if (m_encima == encima)
        return;
    m_encima = encima;
    emit encimaCambia();
}

void Pantalla::ponMaximo(bool maximo) {
    if (m_maximo == maximo)
        return;
    m_maximo = maximo;
    emit opcionesCambian();
}

void Pantalla::ponCifrar(bool cifrar) {
    if (m_cifrar == cifrar)
        return;
    m_cifrar = cifrar;
    emit opcionesCambian();
}

void Pantalla::ponContrasena(const QString &contrasena) {
    if (m_contrasena == contrasena)
        return;
    m_contrasena = contrasena;
    emit opcionesCambian();
}

void Pantalla::ponOrigenes(QList<QUrl> origenes) {
    m_origenes = std::move(origenes);
    m_bytes.reset();
    mide();
    emit origenesCambian();
    emit cabeceraCambia();
}

// A tree can take long to walk, and the user may choose another meanwhile: the
// walk that nobody waits for any more is told to stop.
void Pantalla::mide() {
    m_medida.request_stop();
    m_medida = {};
    if (m_origenes.isEmpty())
        return;
    enFondo([pantalla = QPointer(this), urls = m_origenes, parar = m_medida.get_token()] {
        const qint64 bytes = pesoDe(urls, parar);
        enPrincipal([pantalla, bytes, parar] {
            if (!pantalla || parar.stop_requested())
                return;
            pantalla->m_bytes = bytes;
            emit pantalla->cabeceraCambia();
        });
    });
}
