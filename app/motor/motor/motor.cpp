#include "motor.h"

#include "lugares/binario.h"
#include "lugares/copias.h"
#include "lugares/ruta.h"
#include "lugares/tamano.h"
#include "sistema/hilos.h"
#include "trabajos/encargos.h"

#include <QPointer>

Motor::Motor(EnMarcha &enMarcha, QObject *padre)
    : QObject(padre)
    , m_enMarcha(enMarcha) {}

Motor::~Motor() = default;

void Motor::ponEstado(Estado estado) {
    m_estado = std::move(estado);
    emit estadoCambia();
}

std::optional<QUrl> Motor::binario() {
    return buscaBinario();
}

void Motor::limpiaTemporales() {
    const QByteArray carpeta = copias::carpeta();
    copias::aparta(carpeta);
    enFondo([carpeta] { copias::limpiaApartadas(carpeta); });
}

qint64 Motor::tamano(const QUrl &de) {
    return pesoDe(ruta::nativa(de));
}

void Motor::cancelar() {
    if (m_compresion)
        m_compresion->cancela();
    m_compresion.reset();
    ponEstado(Reposo{});
}

void Motor::comprimir(const QList<QUrl> &origenes, const QUrl &destino, bool maximo,
                      const std::optional<QString> &contrasena) {
    if (origenes.isEmpty() && binario())
        return;
    empieza(encargos::comprimir(origenes, destino, maximo, contrasena));
}

Motor::Listado Motor::listar(const QUrl &archivo, const std::optional<QString> &contrasena) {
    const auto listado = listarEnPoco(archivo, contrasena);
    if (const auto *fallo = std::get_if<FalloAlLeer>(&listado))
        return *fallo;
    return std::get<Entradas>(listado).lista();
}

Lectura<Entradas> Motor::listarEnPoco(const QUrl &archivo,
                                      const std::optional<QString> &contrasena) {
    Lectura<Entradas> listado;
    std::make_shared<Trabajo>(encargos::listar(archivo, contrasena, listado), EnMarcha::todos())
        ->corre();
    return listado;
}

void Motor::recuperarVarios(const QUrl &archivo, const QUrl &destino, const QStringList &rutas,
                            const std::optional<QString> &contrasena) {
    if (rutas.isEmpty())
        recuperar(archivo, destino, std::nullopt, contrasena);
    else
        empieza(encargos::recuperarVarios(archivo, destino, rutas, contrasena));
}

void Motor::recuperar(const QUrl &archivo, const QUrl &destino,
                      const std::optional<QString> &patron,
                      const std::optional<QString> &contrasena) {
    empieza(encargos::recuperar(archivo, destino, patron, contrasena));
}

void Motor::sacarParaVer(const QUrl &archivo, const QString &ruta, qint64 bytes,
                         const std::optional<QString> &contrasena,
                         std::function<void(const Copia &)> hecho, const EspacioLibre &libre) {
    std::make_shared<Trabajo>(
        encargos::sacarParaVer(archivo, ruta, bytes, contrasena, std::move(hecho), libre),
        EnMarcha::todos())
        ->empieza();
}

// The last compression is what `cancelar` ends; an earlier one goes on.
void Motor::empieza(std::unique_ptr<Encargo> encargo) {
    const bool cancelable = encargo->reglas().laCancelaElMotor;
    const auto trabajo = std::make_shared<Trabajo>(std::move(encargo), m_enMarcha,
                                                   [motor = QPointer(this)](const Estado &estado) {
                                                       if (motor)
                                                           motor->ponEstado(estado);
                                                       return !motor.isNull();
                                                   });
    if (trabajo->empieza() && cancelable)
        m_compresion = trabajo;
}
