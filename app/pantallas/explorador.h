#pragma once

#include <QObject>
#include <QUrl>

/// The archive browser: serves one archive for its whole life. Main thread only.
class Explorador : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString nombre READ nombre CONSTANT)

public:
    explicit Explorador(QUrl archivo, QObject *padre = nullptr);

    [[nodiscard]] const QUrl &archivo() const { return m_archivo; }

    /// The archive's file name, for display.
    [[nodiscard]] QString nombre() const;

private:
    const QUrl m_archivo;
};
