#pragma once

#include <QRandomGenerator>
#include <QUuid>

#include <array>

/// Random UUIDs (version 4) by the thousand. Asking the system for each would
/// take longer than reading the entry that gets it; here the system only seeds.
/// Used by one thread.
class Uuids {
public:
    QUuid siguiente();

private:
    QRandomGenerator64 m_azar = QRandomGenerator64::securelySeeded();
    std::array<quint64, 512> m_numeros{};
    size_t m_usados = m_numeros.size();
};
