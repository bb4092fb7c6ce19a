// A window from which the given paths can be dragged, the way a file manager
// does it: press the mouse on it and move. Prints "drop ACTION" after each.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>

class Fuente : public QWidget {
public:
    explicit Fuente(QByteArray lista)
        : QWidget(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint)
        , m_lista(std::move(lista)) {
        setGeometry(0, 0, 60, 60);
    }

protected:
    void mouseMoveEvent(QMouseEvent *) override {
        auto *datos = new QMimeData;
        datos->setData(QStringLiteral("text/uri-list"), m_lista);
        auto *arrastre = new QDrag(this);
        arrastre->setMimeData(datos);
        // File managers propose to move within a file system.
        const auto accion = arrastre->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        std::printf("drop %d\n", static_cast<int>(accion));
        std::fflush(stdout);
        // The target still asks for the data after this.
        QTimer::singleShot(1500, qApp, &QCoreApplication::quit);
    }

private:
    QByteArray m_lista;
};

int main(int argc, char **argv) {
    QByteArray lista;
    for (int i = 1; i < argc; ++i) {
        const QByteArray ruta = argv[i];
        lista += (ruta.startsWith('/') ? "file://" + ruta.toPercentEncoding("/") : ruta) + "\r\n";
    }
    const QApplication aplicacion(argc, argv);
    Fuente fuente(lista);
    fuente.show();
    return QApplication::exec();
}
