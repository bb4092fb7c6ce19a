#include "entradas.h"

Entradas::Entradas(const QList<Entrada> &lista) {
    const auto cuantas = static_cast<size_t>(lista.size());
    m_finales.reserve(cuantas);
    m_bytes.reserve(cuantas);
    m_tipos.reserve(cuantas);
    for (const Entrada &entrada : lista) {
        const QByteArray ruta = entrada.ruta.toUtf8();
        m_rutas.append(ruta.constData(), static_cast<size_t>(ruta.size()));
        m_finales.push_back(m_rutas.size());
        m_bytes.push_back(entrada.bytes);
        m_tipos.push_back(entrada.tipo);
    }
    m_rutas.shrink_to_fit();
}

Entrada Entradas::operator[](size_t indice) const {
    const size_t inicio = indice == 0 ? 0 : m_finales[indice - 1];
    const auto largo = static_cast<qsizetype>(m_finales[indice] - inicio);
    return {
        {}, QString::fromUtf8(m_rutas.data() + inicio, largo), m_bytes[indice], m_tipos[indice]};
}
