#pragma once

#include <QColor>
#include <QQuickPaintedItem>

/// The outline of the drop area: a rounded rectangle, dashed, filled with a
/// colour if there is one, and inside it another line while the area is marked
/// as what the keyboard goes to. Main thread only.
class Contorno : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor trazo READ trazo WRITE ponTrazo)
    Q_PROPERTY(QColor relleno READ relleno WRITE ponRelleno)
    Q_PROPERTY(QColor marca READ marca WRITE ponMarca)

public:
    explicit Contorno(QQuickItem *padre = nullptr);

    [[nodiscard]] QColor trazo() const { return m_trazo; }
    [[nodiscard]] QColor relleno() const { return m_relleno; }
    [[nodiscard]] QColor marca() const { return m_marca; }

    void paint(QPainter *pintor) override;

private:
    void ponTrazo(const QColor &color);
    void ponRelleno(const QColor &color);
    void ponMarca(const QColor &color);

    QColor m_trazo;
    QColor m_relleno = Qt::transparent;
    QColor m_marca = Qt::transparent;
};
