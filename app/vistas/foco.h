#pragma once

#include <QObject>
#include <QQmlEngine>

/// Whether the control that the keyboard goes to is to be marked: from the
/// first key on, however the control came by the focus, until the mouse or a
/// finger is used. Main thread only.
class Foco : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool marcado READ marcado NOTIFY marcadoCambia)

public:
    explicit Foco(QObject *padre = nullptr);

    [[nodiscard]] bool marcado() const { return m_marcado; }

    bool eventFilter(QObject *quien, QEvent *evento) override;

signals:
    void marcadoCambia();

private:
    void ponMarcado(bool marcado);

    bool m_marcado = false;
};
