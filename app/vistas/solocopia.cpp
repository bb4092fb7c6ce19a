#include "solocopia.h"

#include <QDropEvent>

SoloCopia::SoloCopia(QObject *ventana)
    : QObject(ventana) {
    ventana->installEventFilter(this);
}

bool SoloCopia::eventFilter(QObject *ventana, QEvent *evento) {
    switch (evento->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        static_cast<QDropEvent *>(evento)->setDropAction(Qt::CopyAction);
        break;
    default:
        break;
    }
    return QObject::eventFilter(ventana, evento);
}
