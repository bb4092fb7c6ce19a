#include "filas.h"

#include "puertos/escritorio.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace {

// Whether whatever holds the longer text held the shorter one as well: not when
// the last character has only grown, by an accent of its own.
bool sigueDe(const QString &corto, const QString &largo) {
    if (!largo.startsWith(corto))
        return false;
    QTextBoundaryFinder caracteres(QTextBoundaryFinder::Grapheme, largo);
    caracteres.setPosition(corto.size());
    return caracteres.isAtBoundary();
}

bool esEnlace(const Entrada &entrada) {
    // NOLINTNEXTLINE(misc-redundant-expression): takes the two letters for the same
    return entrada.tipo == 'l' || entrada.tipo == 'h';
}

} // namespace

Filas::Filas(Escritorio &escritorio, QObject *padre)
    : QAbstractListModel(padre)
    , m_escritorio(escritorio)
    , m_contenido(std::make_shared<Contenido>()) {}

Filas::~Filas() {
    sueltaContenido(m_contenido);
}

void Filas::ponContenido(ContenidoCompartido contenido) {
    beginResetModel();
    sueltaContenido(m_contenido);
    m_contenido = std::move(contenido);
    m_seleccion.estrena(m_contenido->entradas.cuantas());
    m_arrastradas.estrena(m_contenido->entradas.cuantas());
    m_ancla = 0;
    m_visibles.clear();
    if (!m_busca.isEmpty())
        m_visibles = m_contenido->plegado.filtra(m_busca);
    endResetModel();
    emit seleccionCambia();
}

void Filas::busca(const QString &texto) {
    if (texto == m_busca)
        return;
    beginResetModel();
    const bool sigue = !m_busca.isEmpty() && sigueDe(m_busca, texto);
    if (texto.isEmpty())
        m_visibles.clear();
    else if (sigue)
        m_visibles = m_contenido->plegado.filtra(texto, m_visibles);
    else
        m_visibles = m_contenido->plegado.filtra(texto);
    m_busca = texto;
    m_ancla = 0;
    endResetModel();
}

void Filas::ponAbriendo(std::optional<QString> ruta) {
    m_abriendo = std::move(ruta);
    avisaDeTodas();
}

void Filas::ponFallo(const QString &ruta, const QString &fallo) {
    m_conFallo = ruta;
    m_fallo = fallo;
    avisaDeTodas();
}

void Filas::ponArrastradas(const std::vector<uint32_t> &indices) {
    m_arrastradas.vacia();
    m_arrastradas.anade(indices);
    avisaDeTodas();
}

qsizetype Filas::entradas() const {
    return static_cast<qsizetype>(m_contenido->entradas.cuantas());
}

QStringList Filas::rutasElegidas() const {
    QStringList rutas;
    rutas.reserve(elegidas());
    for (const uint32_t indice : m_seleccion.todas())
        rutas.append(m_contenido->entradas[indice].ruta);
    return rutas;
}

Entrada Filas::entrada(int fila) const {
    return m_contenido->entradas[indiceDe(fila)];
}

uint32_t Filas::indiceDe(int fila) const {
    return m_busca.isEmpty() ? static_cast<uint32_t>(fila) : m_visibles[static_cast<size_t>(fila)];
}

int Filas::rowCount(const QModelIndex &padre) const {
    if (padre.isValid())
        return 0;
    return static_cast<int>(m_busca.isEmpty() ? entradas() : qsizetype(m_visibles.size()));
}

QVariant Filas::data(const QModelIndex &indice, int papel) const {
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const Entrada suya = entrada(indice.row());
    switch (papel) {
    case Qt::DisplayRole:
    case Nombre:
        return suya.nombre();
    case Carpeta:
        return suya.carpeta();
    case Ruta:
        return suya.ruta;
    case Icono:
        return icono(suya);
    case Tamano:
        return tamano(suya);
    case Elegida:
        return elegida(indice.row());
    case Abriendose:
        return m_abriendo == suya.ruta || m_arrastradas.tiene(indiceDe(indice.row()));
    case EsCarpeta:
        return suya.tipo == 'd';
    case Descripcion:
        return descripcion(suya);
    case Fallo:
        return suya.ruta == m_conFallo ? m_fallo : QString();
    default:
        return {};
    }
}

QHash<int, QByteArray> Filas::roleNames() const {
    return {{Nombre, "nombre"},
            {Carpeta, "carpeta"},
            {Ruta, "ruta"},
            {Icono, "icono"},
            {Tamano, "tamano"},
            {Elegida, "elegida"},
            {Abriendose, "abriendose"},
            {EsCarpeta, "esCarpeta"},
            {Descripcion, "descripcion"},
            {Fallo, "fallo"}};
}

QString Filas::icono(const Entrada &entrada) const {
    if (entrada.tipo == 'd')
        return QStringLiteral("folder");
    if (esEnlace(entrada))
        return QStringLiteral("link");
    return QStringLiteral("doc");
}

QString Filas::tamano(const Entrada &entrada) const {
    return entrada.tipo == '-' ? m_escritorio.textoDeBytes(entrada.bytes) : QString();
}

QString Filas::descripcion(const Entrada &entrada) const {
    QStringList partes{entrada.nombre()};
    if (const QString carpeta = entrada.carpeta(); !carpeta.isEmpty())
        partes.append(QStringLiteral("en ") + carpeta);
    if (entrada.tipo == 'd')
        partes.append(QStringLiteral("carpeta"));
    else if (esEnlace(entrada))
        partes.append(QStringLiteral("enlace"));
    else
        partes.append(QStringLiteral("archivo"));
    if (const QString bytes = tamano(entrada); !bytes.isEmpty())
        partes.append(bytes);
    return partes.join(QStringLiteral(", "));
}

void Filas::elige(int fila) {
    m_ancla = fila;
    eligeTramo(fila, fila);
}

void Filas::alterna(int fila) {
    m_ancla = fila;
    const uint32_t indice = indiceDe(fila);
    m_seleccion.pon(indice, !m_seleccion.tiene(indice));
    avisa(fila, fila);
}

void Filas::estira(int fila) {
    eligeTramo(std::min(m_ancla, fila), std::max(m_ancla, fila));
}

void Filas::eligeTodo() {
    eligeTramo(0, rowCount() - 1);
}

void Filas::eligeTramo(int primera, int ultima) {
    m_seleccion.vacia();
    for (int fila = primera; fila <= ultima; ++fila)
        m_seleccion.pon(indiceDe(fila), true);
    avisaDeTodas();
}

void Filas::avisa(int primera, int ultima) {
    if (primera <= ultima)
        emit dataChanged(index(primera), index(ultima), {Elegida, Abriendose, Fallo});
    emit seleccionCambia();
}
