#include "explorador.h"

#include "motor/ruta.h"

Explorador::Explorador(QUrl archivo, QObject *padre)
    : QObject(padre)
    , m_archivo(std::move(archivo)) {}

QString Explorador::nombre() const {
    return ruta::ultimoComponente(m_archivo);
}
