#include "pantalla.h"

#include "lugares/ruta.h"
#include "lugares/tamano.h"
#include "palabras.h"
#include "puertos/escritorio.h"
#include "revelar.h"
#include "sistema/hilos.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace {

template<typename Caso>
const Caso *si(const Motor &motor) {
    return std::get_if<Caso>(&motor.estado());
}

} // namespace

Pantalla::Pantalla(QList<QUrl> inicial, Escritorio &escritorio, EnMarcha &enMarcha, QObject *padre)
    : QObject(padre)
    , m_inicial(std::move(inicial))
    , m_escritorio(escritorio)
    , m_motor(enMarcha)
    , m_seguimiento(m_motor, escritorio,
                    [this] { return palabras::finalDeGuardar(m_motor.estado(), m_escritorio); }) {
    connect(&m_motor, &Motor::estadoCambia, this, &Pantalla::estadoCambia);
    connect(this, &Pantalla::origenesCambian, this, &Pantalla::puedeGuardarCambia);
    connect(this, &Pantalla::opcionesCambian, this, &Pantalla::puedeGuardarCambia);
}

Pantalla::~Pantalla() {
    m_medida.request_stop();
}

Pantalla::Panel Pantalla::panel() const {
    return static_cast<Panel>(m_motor.estado().index());
}

Pantalla::Contenido Pantalla::contenido() const {
    if (origenes().isEmpty())
        return Contenido::Nada;
    return origenes().size() == 1 ? Contenido::Uno : Contenido::Varios;
}

QString Pantalla::cabecera() const {
    if (contenido() == Contenido::Varios)
        return titular() + QStringLiteral(" · ") + peso();
    return titular();
}

QString Pantalla::peso() const {
    return m_bytes ? m_escritorio.textoDeBytes(*m_bytes) : QStringLiteral("…");
}

QString Pantalla::resumen() const {
    if (contenido() != Contenido::Uno)
        return cabecera();
    return QStringList{titular(), clase(), peso()}.join(QStringLiteral(", "));
}

QString Pantalla::icono() const {
    return palabras::iconoDe(m_origenes.esCarpeta(0)) + QStringLiteral(".fill");
}

QString Pantalla::clase() const {
    return palabras::claseDe(m_origenes.esCarpeta(0));
}

bool Pantalla::puedeGuardar() const {
    return !origenes().isEmpty() && !(m_cifrar && m_contrasena.isEmpty());
}

double Pantalla::pct() const {
    const auto *trabajando = si<Motor::Trabajando>(m_motor);
    return trabajando != nullptr ? trabajando->pct : 0;
}

QString Pantalla::detalle() const {
    const auto *trabajando = si<Motor::Trabajando>(m_motor);
    if (trabajando == nullptr)
        return {};
    if (!trabajando->restante)
        return trabajando->detalle;
    return trabajando->detalle + QStringLiteral(" · ~") +
           palabras::cuantoFalta(*trabajando->restante);
}

QString Pantalla::tamanos() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    return hecho != nullptr ? palabras::tamanos(*hecho, m_escritorio) : QString();
}

QString Pantalla::ahorro() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    return hecho != nullptr ? palabras::ahorro(*hecho, m_escritorio) : QString();
}

QString Pantalla::duracion() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    return hecho != nullptr ? palabras::duracion(*hecho) : QString();
}

QString Pantalla::mensaje() const {
    const auto *error = si<Motor::Error>(m_motor);
    return error != nullptr ? error->texto : QString();
}

QString Pantalla::anuncio() const {
    if (const auto *hecho = si<Motor::Hecho>(m_motor))
        return palabras::anuncio(*hecho, m_escritorio);
    if (panel() != Panel::Trabajando)
        return {};
    const int decimas = static_cast<int>(pct() * 10);
    return decimas > 0 ? QStringLiteral("%1, %2 %").arg(titular()).arg(decimas * 10) : titular();
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
    if (origenes().isEmpty())
        return;
    const QPointer esta(this);
    const auto destino = m_escritorio.eligeDestino(palabras::nombrePropuesto(origenes()));
    if (!esta || !destino)
        return;
    m_motor.comprimir(origenes(), *destino, m_maximo,
                      m_cifrar ? std::optional(m_contrasena) : std::nullopt);
}

void Pantalla::cancelar() {
    m_motor.cancelar();
}

void Pantalla::revela() {
    if (const auto *hecho = si<Motor::Hecho>(m_motor))
        revelaOAvisa(m_escritorio, hecho->ruta);
}

void Pantalla::otraCosa() {
    m_motor.ponEstado(Motor::Reposo{});
    ponOrigenes({});
}

void Pantalla::volver() {
    m_motor.ponEstado(Motor::Reposo{});
}

void Pantalla::ponEncima(bool encima) {
    if (std::exchange(m_encima, encima) != encima)
        emit encimaCambia();
}

void Pantalla::ponMaximo(bool maximo) {
    if (std::exchange(m_maximo, maximo) != maximo)
        emit opcionesCambian();
}

void Pantalla::ponCifrar(bool cifrar) {
    if (std::exchange(m_cifrar, cifrar) != cifrar)
        emit opcionesCambian();
}

void Pantalla::ponContrasena(const QString &contrasena) {
    if (contrasena == m_contrasena)
        return;
    m_contrasena = palabras::enUnaLinea(contrasena);
    emit opcionesCambian();
}

void Pantalla::ponOrigenes(QList<QUrl> origenes) {
    m_origenes.pon(std::move(origenes));
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
    if (origenes().isEmpty())
        return;
    enFondo([pantalla = QPointer(this), urls = origenes(), parar = m_medida.get_token()] {
        const qint64 bytes = pesoDe(urls, parar);
        enPrincipal([pantalla, bytes, parar] {
            if (!pantalla || parar.stop_requested())
                return;
            pantalla->m_bytes = bytes;
            emit pantalla->cabeceraCambia();
        });
    });
}
