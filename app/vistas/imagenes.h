#pragma once

#include <QQuickImageProvider>

/// The system images, drawn in one colour: "image://sistema/NAME/RRGGBB". Any
/// thread. An unknown name gives an empty image.
class Imagenes : public QQuickImageProvider {
public:
    Imagenes();
    QImage requestImage(const QString &id, QSize *tamano, const QSize &pedido) override;
};
