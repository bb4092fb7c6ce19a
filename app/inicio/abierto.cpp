#include "abierto.h"

Abierto &Abierto::compartido() {
    static Abierto unico;
    return unico;
}

void Abierto::ponArchivo(std::optional<QUrl> archivo) {
    emit vaACambiar();
    m_archivo = std::move(archivo);
}

void Abierto::ponAComprimir(QList<QUrl> urls) {
    emit vaACambiar();
    m_aComprimir = std::move(urls);
}
