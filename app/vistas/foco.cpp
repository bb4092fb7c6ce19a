#include "foco.h"

#include <QCoreApplication>
#include <QEvent>

// The panels' own windows count as well: whoever answers one with Return comes
// back to a control that has not been reached by Tab.
Foco::Foco(QObject *padre)
    : QObject(padre) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool Foco::eventFilter(QObject *quien, QEvent *evento) {
    switch (evento->type()) {
    case QEvent::KeyPress:
        ponMarcado(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        ponMarcado(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(quien, evento);
}

void Foco::ponMarcado(bool marcado) {
    if (marcado == m_marcado)
        return;
    m_marcado = marcado;
    emit marcadoCambia();
}
