// What a row of the list says; how the list behaves is in filas.cpp.
#include "escritorio/escritorio.h"
#include "filas.h"

namespace {

bool esEnlace(const Entrada &entrada) {
    // NOLINTNEXTLINE(misc-redundant-expression): takes the two letters for the same
    return entrada.tipo == 'l' || entrada.tipo == 'h';
}

} // namespace

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
    default:
        return {};
    }
}

QHash<int, QByteArray> Filas::roleNames() const {
    return {{Nombre, "nombre"},         {Carpeta, "carpeta"},     {Ruta, "ruta"},
            {Icono, "icono"},           {Tamano, "tamano"},       {Elegida, "elegida"},
            {Abriendose, "abriendose"}, {EsCarpeta, "esCarpeta"}, {Descripcion, "descripcion"}};
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
