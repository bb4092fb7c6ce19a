// What the compression screen says; how it behaves is in pantalla.cpp.
#include "cuantofalta.h"
#include "escritorio/escritorio.h"
#include "motor/ruta.h"
#include "pantalla.h"

namespace {

template<typename Caso>
const Caso *si(const Motor &motor) {
    return std::get_if<Caso>(&motor.estado());
}

QString tamanosDe(const Motor::Hecho &hecho, const Escritorio &escritorio) {
    return escritorio.textoDeBytes(hecho.entrada) + QStringLiteral("  →  ") +
           escritorio.textoDeBytes(hecho.salida);
}

QString ahorroDe(const Motor::Hecho &hecho, const Escritorio &escritorio) {
    if (hecho.entrada < 1)
        return {};
    const double quedan =
        static_cast<double>(hecho.salida) / static_cast<double>(hecho.entrada) * 100;
    return QStringLiteral("ahorras %1 · %2% menos")
        .arg(escritorio.textoDeBytes(hecho.entrada - hecho.salida))
        .arg(static_cast<qint64>(100 - quedan));
}

} // namespace

Pantalla::Panel Pantalla::panel() const {
    return static_cast<Panel>(m_motor.estado().index());
}

QStringList Pantalla::nombres() const {
    QStringList todos;
    todos.reserve(m_origenes.size());
    for (const QUrl &origen : m_origenes)
        todos.append(ruta::ultimoComponente(origen));
    return todos;
}

Pantalla::Contenido Pantalla::contenido() const {
    if (m_origenes.isEmpty())
        return Contenido::Nada;
    return m_origenes.size() == 1 ? Contenido::Uno : Contenido::Varios;
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
    return QStringList{titular(), clase(0), peso()}.join(QStringLiteral(", "));
}

bool Pantalla::puedeGuardar() const {
    return !m_origenes.isEmpty() && !(m_cifrar && m_contrasena.isEmpty());
}

QString Pantalla::titular() const {
    switch (contenido()) {
    case Contenido::Nada:
        return {};
    case Contenido::Uno:
        return ruta::ultimoComponente(m_origenes.first());
    case Contenido::Varios:
        break;
    }
    return QStringLiteral("%1 archivos").arg(m_origenes.size());
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
    return trabajando->detalle + QStringLiteral(" · ~") + cuantoFalta(*trabajando->restante);
}

QString Pantalla::tamanos() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    return hecho != nullptr ? tamanosDe(*hecho, m_escritorio) : QString();
}

QString Pantalla::ahorro() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    return hecho != nullptr ? ahorroDe(*hecho, m_escritorio) : QString();
}

QString Pantalla::duracion() const {
    const auto *hecho = si<Motor::Hecho>(m_motor);
    if (hecho == nullptr)
        return {};
    constexpr double kMinuto = 60;
    if (hecho->segundos < kMinuto)
        return QStringLiteral("en %1 s").arg(static_cast<qint64>(hecho->segundos));
    return QStringLiteral("en %1 min").arg(static_cast<qint64>(hecho->segundos / kMinuto));
}

QString Pantalla::mensaje() const {
    const auto *error = si<Motor::Error>(m_motor);
    return error != nullptr ? error->texto : QString();
}

QString Pantalla::anuncio() const {
    if (const auto *hecho = si<Motor::Hecho>(m_motor)) {
        QStringList partes{QStringLiteral("Guardado: de %1 a %2")
                               .arg(m_escritorio.textoDeBytes(hecho->entrada),
                                    m_escritorio.textoDeBytes(hecho->salida)),
                           ahorro(), duracion()};
        partes.removeAll(QString());
        return partes.join(QStringLiteral(", "));
    }
    if (panel() != Panel::Trabajando)
        return {};
    const int decimas = static_cast<int>(pct() * 10);
    return decimas > 0 ? QStringLiteral("%1, %2 %").arg(titular()).arg(decimas * 10) : titular();
}

Final Pantalla::final(const Motor::Estado &estado, const Escritorio &escritorio) {
    if (const auto *error = std::get_if<Motor::Error>(&estado))
        return {QStringLiteral("No se pudo guardar"), error->texto};
    const auto *hecho = std::get_if<Motor::Hecho>(&estado);
    if (hecho == nullptr)
        return {};
    QStringList lineas{tamanosDe(*hecho, escritorio)};
    if (const QString ahorro = ahorroDe(*hecho, escritorio); !ahorro.isEmpty())
        lineas.append(ahorro);
    return {QStringLiteral("Guardado en «%1»").arg(ruta::ultimoComponente(hecho->ruta)),
            lineas.join(u'\n')};
}

QString Pantalla::icono(int indice, bool relleno) const {
    const bool carpeta = esCarpeta(m_origenes.value(indice));
    return (carpeta ? QStringLiteral("folder") : QStringLiteral("doc")) +
           (relleno ? QStringLiteral(".fill") : QString());
}

QString Pantalla::clase(int indice) const {
    return esCarpeta(m_origenes.value(indice)) ? QStringLiteral("carpeta")
                                               : QStringLiteral("archivo");
}

QString Pantalla::nombrePropuesto() const {
    if (contenido() == Contenido::Uno)
        return ruta::ultimoComponente(m_origenes.first()) + QStringLiteral(".okz");
    return QStringLiteral("Archivo.okz");
}
