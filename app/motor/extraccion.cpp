#include "extraccion.h"

#include "clave.h"
#include "ruta.h"

Proceso::Orden Extraccion::orden(const std::optional<QString> &entrada) const {
    QList<QByteArray> argumentos{"extract", ruta::nativa(archivo), "-o", destino};
    if (entrada)
        argumentos << "--file" << entrada->toUtf8();
    return {ruta::nativa(motor), argumentos + clave::argumentos(clave)};
}
