#pragma once

#include <QColor>
#include <QQuickPaintedItem>

/// The outline of the drop area: a rounded rectangle, dashed, filled with a
/// colour if there is one, and inside it another line while the area is marked
/// as what the keyboard goes to. Main thread only.
class Contorno : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor trazo MEMBER m_trazo NOTIFY cambia)
    Q_PROPERTY(QColor relleno MEMBER m_relleno NOTIFY cambia)
    Q_PROPERTY(QColor marca MEMBER m_marca NOTIFY cambia)

public:
    explicit Contorno(QQuickItem *padre = nullptr);

    void paint(QPainter *pintor) override;

signals:
    void cambia();

private:
    QColor m_trazo;
    QColor m_relleno = Qt::transparent;
    QColor m_marca = Qt::transparent;
};
