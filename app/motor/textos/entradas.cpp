#include "entradas.h"

#include "lineas.h"

#include <QRandomGenerator>

#include <array>

namespace {

// Byte `n` of a number, the highest first.
uchar octeto(quint64 numero, int n) {
    return static_cast<uchar>(numero >> (8 * (7 - n)));
}

// Random UUIDs (version 4) by the thousand. Asking the system for each would
// take longer than reading the entry that gets it; here the system only seeds.
class Uuids {
public:
    QUuid siguiente() {
        if (m_usados == m_numeros.size()) {
            m_azar.fillRange(m_numeros.data(), static_cast<qsizetype>(m_numeros.size()));
            m_usados = 0;
        }
        const quint64 alto = m_numeros[m_usados++];
        const quint64 bajo = m_numeros[m_usados++];
        const auto version = static_cast<ushort>((alto & 0x0fffU) | 0x4000U);
        const auto variante = static_cast<uchar>((octeto(bajo, 0) & 0x3fU) | 0x80U);
        return {static_cast<uint>(alto >> 32U),
                static_cast<ushort>(alto >> 16U),
                version,
                variante,
                octeto(bajo, 1),
                octeto(bajo, 2),
                octeto(bajo, 3),
                octeto(bajo, 4),
                octeto(bajo, 5),
                octeto(bajo, 6),
                octeto(bajo, 7)};
    }

private:
    QRandomGenerator64 m_azar = QRandomGenerator64::securelySeeded();
    std::array<quint64, 512> m_numeros{};
    size_t m_usados = m_numeros.size();
};

} // namespace

void Entradas::anade(const Caracter &tipo, qint64 bytes, std::string_view ruta) {
    m_rutas.append(ruta);
    m_finales.push_back(m_rutas.size());
    m_bytes.push_back(bytes);
    m_tipos.push_back(tipo);
}

void Entradas::completa() {
    m_rutas.shrink_to_fit();
    m_finales.shrink_to_fit();
    m_bytes.shrink_to_fit();
    m_tipos.shrink_to_fit();
}

std::string_view Entradas::ruta(size_t indice) const {
    const size_t inicio = indice == 0 ? 0 : m_finales[indice - 1];
    return std::string_view(m_rutas).substr(inicio, m_finales[indice] - inicio);
}

Entrada Entradas::operator[](size_t indice) const {
    return {{}, lineas::texto(ruta(indice)), m_bytes[indice], m_tipos[indice]};
}

QList<Entrada> Entradas::lista() const {
    Uuids identidades;
    QList<Entrada> todas;
    todas.reserve(static_cast<qsizetype>(cuantas()));
    for (size_t i = 0; i < cuantas(); ++i) {
        todas.append((*this)[i]);
        todas.last().id = identidades.siguiente();
    }
    return todas;
}
