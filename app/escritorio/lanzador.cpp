#include "lanzador.h"

#include "puertos/identidad.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

Lanzador::Lanzador() {
    m_pausa.setSingleShot(true);
    m_pausa.setInterval(200ms);
    connect(&m_pausa, &QTimer::timeout, this, &Lanzador::di);
}

Lanzador::~Lanzador() {
    m_parte.reset();
    di();
}

void Lanzador::avanza(std::optional<double> parte) {
    m_parte = parte;
    if (!m_pausa.isActive() || !parte)
        di();
}

void Lanzador::di() {
    if (m_parte == m_dicha)
        return;
    m_dicha = m_parte;
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto senal = QDBusMessage::createSignal(QLatin1String(kObjetoPropio),
                                            QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                            QStringLiteral("Update"));
    senal << QStringLiteral("application://%1.desktop").arg(QLatin1String(kIdentidad))
          << QVariantMap{{QStringLiteral("progress"), std::clamp(m_parte.value_or(0), 0.0, 1.0)},
                         {QStringLiteral("progress-visible"), m_parte.has_value()}};
    bus.send(senal);
    m_pausa.start();
}
