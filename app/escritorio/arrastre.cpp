// A drag must begin at once, for it is the user's hand, while taking out a large
// entry, or any of an encrypted archive, takes its time. The files need to be
// there only when the target copies them, after the drop.
//
// Where the copies will be is known beforehand, and so is what the target asks
// for while the pointer is over it: nobody waits for that. A target that was
// made to wait would hang itself (most ask without going on with their work)
// and give up after seconds. Instead the drop waits: where the release of the
// button comes through this application, as on X11, it is held back until the
// files are there. The target knows of no drop before that.
//
// On Wayland the compositor sees the release and tells the target, so only the
// answer to the target's question can wait; DatosDeSaque does that.
#include "arrastre.h"

#include "datosdesaque.h"
#include "trabajos/saque.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QTimer>
#include <QWindow>

#include <memory>

namespace {

// Holds the release of the button back while there is something to wait for.
class Retencion : public QObject {
public:
    explicit Retencion(Saque &saque)
        : m_saque(saque) {
        connect(&saque, &Saque::acabado, this, &Retencion::acaba);
        // Within the drag, so that what Qt does with the mouse comes after this.
        QTimer::singleShot(0, this, [this] {
            qApp->installEventFilter(this);
            miraDondeEsta();
        });
    }

    bool eventFilter(QObject *quien, QEvent *suceso) override {
        if (m_saque.fase() != Saque::Fase::Sacando)
            return false;
        if (suceso->type() == QEvent::MouseButtonRelease && !m_soltado) {
            m_ventana = quien;
            m_soltado.reset(suceso->clone());
            return true;
        }
        // Where it was let go is where it falls.
        return m_soltado &&
               (suceso->type() == QEvent::MouseMove || suceso->type() == QEvent::MouseButtonPress ||
                suceso->type() == QEvent::MouseButtonDblClick ||
                suceso->type() == QEvent::MouseButtonRelease);
    }

private:
    // The drag looks for a target when the mouse moves, and a quick hand may be
    // there already.
    static void miraDondeEsta() {
        QWindow *ventana = QGuiApplication::focusWindow();
        if (ventana == nullptr)
            return;
        const QPointF aqui = QCursor::pos();
        QCoreApplication::postEvent(
            ventana,
            new QMouseEvent(QEvent::MouseMove, ventana->mapFromGlobal(aqui), aqui, Qt::NoButton,
                            QGuiApplication::mouseButtons(), QGuiApplication::keyboardModifiers()));
    }

    void acaba() {
        if (m_saque.fase() == Saque::Fase::Fallido)
            QDrag::cancel();
        else if (m_soltado && m_ventana)
            QCoreApplication::postEvent(m_ventana, m_soltado.release());
    }

    Saque &m_saque;
    QPointer<QObject> m_ventana;
    std::unique_ptr<QEvent> m_soltado;
};

constexpr int kMargen = 8;
constexpr int kAncho = 240; // of the longest label
constexpr int kDelPuntero = 14;

QPixmap etiqueta(const QString &rotulo) {
    const QFontMetrics letra(QGuiApplication::font());
    const QString texto = letra.elidedText(rotulo, Qt::ElideMiddle, kAncho);
    const QSize medida(letra.horizontalAdvance(texto) + 2 * kMargen, letra.height() + kMargen);
    const qreal escala = qGuiApp->devicePixelRatio();
    QPixmap dibujo(medida * escala);
    dibujo.setDevicePixelRatio(escala);
    dibujo.fill(Qt::transparent);
    const QPalette paleta = QGuiApplication::palette();
    QPainter pincel(&dibujo);
    pincel.setRenderHint(QPainter::Antialiasing);
    pincel.setPen(paleta.color(QPalette::Highlight));
    pincel.setBrush(paleta.base());
    const QRectF caja = QRectF(QPointF(), medida).adjusted(0.5, 0.5, -0.5, -0.5);
    pincel.drawRoundedRect(caja, 4, 4);
    pincel.setPen(paleta.color(QPalette::Text));
    pincel.drawText(caja, Qt::AlignCenter, texto);
    return dibujo;
}

} // namespace

bool arrastraFuera(Saque &saque, const QString &rotulo) {
    if (!(QGuiApplication::mouseButtons() & Qt::LeftButton))
        return false;
    auto *arrastre = new QDrag(QGuiApplication::focusWindow()); // Qt deletes it in time
    arrastre->setMimeData(new DatosDeSaque(saque));
    arrastre->setPixmap(etiqueta(rotulo));
    arrastre->setHotSpot({-kDelPuntero, -kDelPuntero});
    const Retencion retencion(saque);
    return arrastre->exec(Qt::CopyAction) == Qt::CopyAction;
}
