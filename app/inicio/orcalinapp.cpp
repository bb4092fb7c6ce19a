#include "orcalinapp.h"

#include "abierto.h"
#include "lugares/ruta.h"
#include "pantallas/palabras.h"
#include "puertos/escritorio.h"

namespace {

template<typename Vista>
void retira(std::unique_ptr<Vista> &vista) {
    if (vista)
        vista.release()->deleteLater();
}

} // namespace

OrcalinApp::OrcalinApp(std::unique_ptr<Delegado> delegado, Escritorio &escritorio,
                       EnMarcha &enMarcha)
    : m_delegado(std::move(delegado))
    , m_escritorio(escritorio)
    , m_enMarcha(enMarcha)
    , m_abierto(Abierto::compartido())
    , m_salida(enMarcha) {
    connect(&m_abierto, &Abierto::vaACambiar, this, &OrcalinApp::pideBody);
    connect(&m_enMarcha, &EnMarcha::acabaSolo, this, &OrcalinApp::avisaDelFinal);
    body();
}

OrcalinApp::~OrcalinApp() = default;

void OrcalinApp::abrirDialogo() {
    if (const auto archivo = m_escritorio.eligeArchivo())
        m_abierto.ponArchivo(*archivo);
}

void OrcalinApp::guardarAlgo() {
    m_abierto.ponArchivo(std::nullopt);
}

void OrcalinApp::avisaDelFinal(const Trabajo &trabajo) {
    const Final final = trabajo.obra() == Obra::Guardar
                            ? palabras::finalDeGuardar(trabajo.estado(), m_escritorio)
                            : palabras::finalDeRecuperar(trabajo.estado(), trabajo.archivo());
    m_escritorio.avisa(Aviso::Siempre, final.titulo, final.texto);
}

// Several writes of one turn of the event loop make one new screen.
void OrcalinApp::pideBody() {
    if (std::exchange(m_pedido, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_pedido = false;
            if (identidad() != m_identidad)
                body();
        },
        Qt::QueuedConnection);
}

OrcalinApp::Identidad OrcalinApp::identidad() const {
    // Nothing of a list that is handed in meanwhile reaches the browser.
    if (m_abierto.archivo())
        return {m_abierto.archivo(), {}};
    QByteArrayList rutas;
    for (const QUrl &url : m_abierto.aComprimir())
        rutas.append(ruta::nativa(url));
    return {std::nullopt, rutas.join('|')};
}

void OrcalinApp::body() {
    m_identidad = identidad();
    m_escritorio.cierraPaneles(); // they asked for the screen that goes
    // The view is still bound to the old screen until it has seen the new one.
    retira(m_pantalla);
    retira(m_explorador);
    if (m_identidad.archivo)
        m_explorador = std::make_unique<Explorador>(*m_identidad.archivo, m_escritorio, m_enMarcha);
    else
        m_pantalla = nuevaPantalla();
    emit pantallaCambia();
}

std::unique_ptr<Pantalla> OrcalinApp::nuevaPantalla() {
    auto pantalla = std::make_unique<Pantalla>(m_abierto.aComprimir(), m_escritorio, m_enMarcha);
    connect(pantalla.get(), &Pantalla::abreArchivo, this,
            [this](const QUrl &archivo) { m_abierto.ponArchivo(archivo); });
    return pantalla;
}
