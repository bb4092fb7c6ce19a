#include "explorador.h"

#include "lugares/ruta.h"
#include "palabras.h"
#include "puertos/escritorio.h"
#include "revelar.h"
#include "sistema/hilos.h"
#include "trabajos/saque.h"

#include <QPointer>

Explorador::Explorador(QUrl archivo, Escritorio &escritorio, EnMarcha &enMarcha, QObject *padre)
    : QObject(padre)
    , m_archivo(std::move(archivo))
    , m_escritorio(escritorio)
    , m_enMarcha(enMarcha)
    , m_motor(enMarcha)
    , m_filas(escritorio)
    , m_seguimiento(m_motor, escritorio,
                    [this] { return palabras::finalDeRecuperar(m_motor.estado(), m_archivo); }) {
    connect(&m_motor, &Motor::estadoCambia, this, &Explorador::cambia);
    connect(&m_filas, &Filas::seleccionCambia, this, &Explorador::listaCambia);
    connect(&m_filas, &Filas::modelReset, this, &Explorador::listaCambia);
}

Explorador::~Explorador() = default;

QString Explorador::nombre() const {
    return ruta::ultimoComponente(m_archivo);
}

Explorador::Panel Explorador::panel() const {
    const Motor::Estado &estado = m_motor.estado();
    if (std::holds_alternative<Motor::Trabajando>(estado))
        return Panel::Ocupado;
    if (std::holds_alternative<Motor::Hecho>(estado))
        return Panel::Recuperado;
    if (std::holds_alternative<Motor::Error>(estado))
        return Panel::Problema;
    if (m_pideContrasena)
        return Panel::PedirClave;
    if (m_fallo)
        return Panel::Problema;
    return m_cargando ? Panel::Ocupado : Panel::Contenido;
}

QString Explorador::texto() const {
    if (const auto *trabajando = std::get_if<Motor::Trabajando>(&m_motor.estado()))
        return trabajando->detalle;
    if (const auto *error = std::get_if<Motor::Error>(&m_motor.estado()))
        return error->texto;
    return m_fallo.value_or(QStringLiteral("leyendo el archivo…"));
}

QString Explorador::cuenta() const {
    if (m_busca.isEmpty())
        return QStringLiteral("%1 elementos").arg(m_filas.entradas());
    return QStringLiteral("%1 de %2").arg(m_filas.rowCount()).arg(m_filas.entradas());
}

QString Explorador::rotuloRecuperar() const {
    if (m_filas.elegidas() == 1)
        return QStringLiteral("Recuperar este");
    return QStringLiteral("Recuperar %1").arg(m_filas.elegidas());
}

void Explorador::ponBusca(const QString &busca) {
    if (busca == m_busca)
        return;
    m_busca = palabras::enUnaLinea(busca);
    m_filas.busca(m_busca);
    emit buscaCambia(); // also for the same again: the field holds more than that
}

void Explorador::ponContrasena(const QString &contrasena) {
    if (contrasena == m_contrasena)
        return;
    m_contrasena = palabras::enUnaLinea(contrasena);
    emit contrasenaCambia();
}

std::optional<QString> Explorador::clave() const {
    return m_contrasena.isEmpty() ? std::nullopt : std::optional(m_contrasena);
}

void Explorador::cargar() {
    m_cargando = true;
    emit cambia();
    enFondo([esta = QPointer(this), archivo = m_archivo, clave = clave()] {
        auto leido = Motor::listarEnPoco(archivo, clave);
        if (const auto *fallo = std::get_if<FalloAlLeer>(&leido)) {
            enPrincipal([esta, fallo = *fallo] {
                if (esta)
                    esta->acabaCarga(fallo);
            });
            return;
        }
        auto contenido = preparaContenido(std::get<Entradas>(std::move(leido)));
        enPrincipal([esta, contenido = std::move(contenido)]() mutable {
            if (esta)
                esta->acabaCarga(std::move(contenido));
            else
                sueltaContenido(contenido);
        });
    });
}

void Explorador::acabaCarga(ContenidoCompartido contenido) {
    m_cargando = false;
    m_fallo.reset();
    m_filas.ponContenido(std::move(contenido));
    emit cambia();
    emit focoBusqueda();
}

void Explorador::acabaCarga(const FalloAlLeer &fallo) {
    m_cargando = false;
    if (const auto *otro = std::get_if<fallos::Otro>(&fallo))
        m_fallo = otro->texto;
    else
        m_pideContrasena = true;
    emit cambia();
}

void Explorador::enviaClave() {
    m_pideContrasena = false;
    cargar();
}

void Explorador::reintenta() {
    m_fallo.reset();
    m_cargando = true; // before the engine's state shows what is behind it
    m_motor.ponEstado(Motor::Reposo{});
    cargar();
}

void Explorador::abrir(int fila) {
    const Entrada entrada = m_filas.entrada(fila);
    quitaAbrirFallo();
    if (entrada.tipo == 'd') {
        ponBusca(entrada.ruta + QLatin1Char('/'));
        return;
    }
    if (m_abriendo)
        return;
    ponAbriendo(entrada.ruta);
    Motor::sacarParaVer(m_archivo, entrada.ruta, entrada.bytes, clave(),
                        [esta = QPointer(this), ruta = entrada.ruta](const Motor::Copia &copia) {
                            if (esta)
                                esta->acabaAbrir(ruta, copia);
                        });
}

void Explorador::acabaAbrir(const QString &ruta, const Motor::Copia &copia) {
    ponAbriendo(std::nullopt);
    if (const auto *url = std::get_if<QUrl>(&copia)) {
        abreOMuestra(m_escritorio, *url, [esta = QPointer(this), ruta, copia = *url] {
            if (esta)
                esta->ponAbrirFallo(ruta, QStringLiteral("No hay con qué abrir «%1».")
                                              .arg(ruta::ultimoComponente(copia)));
        });
        return;
    }
    const auto *otro = std::get_if<fallos::Otro>(&std::get<FalloAlLeer>(copia));
    ponAbrirFallo(ruta,
                  otro != nullptr ? otro->texto : QStringLiteral("Hace falta la contraseña."));
}

void Explorador::ponAbriendo(std::optional<QString> ruta) {
    m_abriendo = ruta;
    m_filas.ponAbriendo(std::move(ruta));
}

void Explorador::ponAbrirFallo(const QString &ruta, const QString &fallo) {
    m_abrirFallo = fallo;
    m_filas.ponFallo(ruta, fallo);
    emit abrirFalloCambia();
}

void Explorador::recuperarFila(int fila) {
    recuperar({m_filas.entrada(fila).ruta});
}

void Explorador::recuperarElegidas() {
    if (hayElegidas())
        recuperar(m_filas.rutasElegidas());
}

void Explorador::recuperarTodo() {
    recuperar({});
}

void Explorador::recuperar(const QStringList &rutas) {
    const QPointer esta(this); // another archive may be opened meanwhile
    const auto destino =
        m_escritorio.eligeCarpeta(rutas.isEmpty() ? QStringLiteral("¿Dónde dejo todo el contenido?")
                                                  : QStringLiteral("¿Dónde lo dejo?"));
    if (esta && destino)
        m_motor.recuperarVarios(m_archivo, *destino, rutas, clave());
}

void Explorador::arrastrar(int fila) {
    if (std::exchange(m_arrastrando, true))
        return;
    quitaAbrirFallo();
    if (!m_filas.elegida(fila))
        m_filas.elige(fila);
    const auto indices = m_filas.indicesElegidos();
    m_filas.ponArrastradas(indices);
    const QString rotulo = indices.size() == 1 ? m_filas.entrada(fila).nombre()
                                               : QStringLiteral("%1 elementos").arg(indices.size());
    enFondo([esta = QPointer(this), contenido = m_filas.contenido(), indices, rotulo,
             ruta = m_filas.entrada(fila).ruta] {
        enPrincipal([esta, rotulo, ruta, raices = raicesDe(*contenido, indices)] {
            if (esta)
                esta->lleva(ruta, raices, rotulo);
        });
    });
}

void Explorador::lleva(const QString &ruta, const Raices &raices, const QString &rotulo) {
    const QPointer esta(this); // another archive may be opened meanwhile
    Saque saque(m_archivo, raices.rutas, raices.bytes, clave(), m_enMarcha);
    connect(&saque, &Saque::acabado, this, [this] { m_filas.ponArrastradas({}); });
    saque.empieza();
    if (saque.fase() != Saque::Fase::Fallido && m_escritorio.arrastra(saque, rotulo))
        saque.conserva();
    if (!esta)
        return;
    m_arrastrando = false;
    m_filas.ponArrastradas({});
    if (!saque.fallo().isEmpty())
        ponAbrirFallo(ruta, saque.fallo());
}

void Explorador::revela() {
    if (const auto *hecho = std::get_if<Motor::Hecho>(&m_motor.estado()))
        revelaOAvisa(m_escritorio, hecho->ruta);
}

void Explorador::volver() {
    m_motor.ponEstado(Motor::Reposo{});
}
