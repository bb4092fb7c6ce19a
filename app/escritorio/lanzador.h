#pragma once

#include <QObject>
#include <QTimer>

#include <optional>

/// The progress bar at the application's place in the dock or task bar, for
/// those that hear the signal for it. Without a session bus nothing happens.
/// Main thread only.
class Lanzador : public QObject {
    Q_OBJECT

public:
    Lanzador();
    /// Takes the bar away.
    ~Lanzador() override;

    /// 0 to 1, or no bar. Told on at once, then at most five times a second.
    void avanza(std::optional<double> parte);

private:
    void di();

    std::optional<double> m_parte;
    std::optional<double> m_dicha;
    QTimer m_pausa;
};
