#include "contorno.h"

#include <QPainter>

namespace {

constexpr qreal kGrosor = 2;

void rectangulo(QPainter &pintor, const QRectF &hueco, qreal borde, qreal radio) {
    pintor.drawRoundedRect(hueco.adjusted(borde, borde, -borde, -borde), radio, radio);
}

} // namespace

Contorno::Contorno(QQuickItem *padre)
    : QQuickPaintedItem(padre) {
    setAntialiasing(true);
    connect(this, &Contorno::cambia, this, [this] { update(); });
}

void Contorno::paint(QPainter *pintor) {
    QPen pluma(m_trazo, kGrosor);
    pluma.setDashPattern({3.5, 2.5}); // in units of the line's width: 7 on, 5 off
    pluma.setCapStyle(Qt::FlatCap);
    pintor->setPen(pluma);
    pintor->setBrush(m_relleno);
    rectangulo(*pintor, boundingRect(), 1, 14);
    pintor->setPen(QPen(m_marca, kGrosor));
    pintor->setBrush(Qt::NoBrush);
    rectangulo(*pintor, boundingRect(), 5, 10);
}
