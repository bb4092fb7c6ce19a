#include "uuids.h"

namespace {

// Byte `n` of a number, the highest first.
uchar octeto(quint64 numero, int n) {
    return static_cast<uchar>(numero >> (8 * (7 - n)));
}

} // namespace

QUuid Uuids::siguiente() {
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
