#include "imagenes.h"

#include <QPainter>
#include <QSvgRenderer>

Imagenes::Imagenes()
    : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage Imagenes::requestImage(const QString &id, QSize *tamano, const QSize &pedido) {
    const auto corte = id.indexOf(u'/');
    QSvgRenderer dibujo(QStringLiteral(":/Orcalin/imagenes/%1.svg").arg(id.left(corte)));
    const QSize medida = pedido.isValid() ? pedido : dibujo.defaultSize();
    if (tamano != nullptr)
        *tamano = medida;
    if (!dibujo.isValid() || medida.isEmpty())
        return {};
    QImage imagen(medida, QImage::Format_ARGB32_Premultiplied);
    imagen.fill(Qt::transparent);
    QPainter pincel(&imagen);
    dibujo.render(&pincel);
    // The drawing gives the shape, the colour comes from the palette.
    pincel.setCompositionMode(QPainter::CompositionMode_SourceIn);
    pincel.fillRect(imagen.rect(), QColor(u'#' + id.mid(corte + 1)));
    return imagen;
}
