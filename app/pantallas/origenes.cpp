#include "origenes.h"

#include "lugares/ruta.h"
#include "palabras.h"

#include <sys/stat.h>

void Origenes::pon(QList<QUrl> urls) {
    beginResetModel();
    m_urls = std::move(urls);
    m_carpetas = QList<std::optional<bool>>(m_urls.size());
    endResetModel();
}

bool Origenes::esCarpeta(qsizetype fila) const {
    if (fila < 0 || fila >= m_urls.size())
        return false;
    std::optional<bool> &carpeta = m_carpetas[fila];
    if (!carpeta) {
        struct stat dato {};
        carpeta =
            ::lstat(ruta::nativa(m_urls[fila]).constData(), &dato) == 0 && S_ISDIR(dato.st_mode);
    }
    return *carpeta;
}

int Origenes::rowCount(const QModelIndex &padre) const {
    return padre.isValid() ? 0 : static_cast<int>(m_urls.size());
}

QVariant Origenes::data(const QModelIndex &indice, int papel) const {
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    switch (papel) {
    case Qt::DisplayRole:
    case Nombre:
        return ruta::ultimoComponente(m_urls[indice.row()]);
    case Icono:
        return palabras::iconoDe(esCarpeta(indice.row()));
    case Clase:
        return palabras::claseDe(esCarpeta(indice.row()));
    default:
        return {};
    }
}

QHash<int, QByteArray> Origenes::roleNames() const {
    return {{Nombre, "nombre"}, {Icono, "icono"}, {Clase, "clase"}};
}
