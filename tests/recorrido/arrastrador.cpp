// A window from which the given paths can be dragged, the way a file manager
// does it: press the mouse on it and move. Prints "listo" once it can be seen,
// "accion ACTION" when what the target would do changes, "drop ACTION" at the end.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <utility>

void di(const char *que, int valor) {
    (void)std::printf("%s %d\n", que, valor);
    (void)std::fflush(stdout);
}

class Fuente : public QWidget {
public:
    explicit Fuente(QByteArray lista)
        : QWidget(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint)
        , m_lista(std::move(lista)) {
        setGeometry(0, 0, 60, 60);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        if (std::exchange(m_visto, true))
            return;
        (void)std::puts("listo");
        (void)std::fflush(stdout);
    }

    void mouseMoveEvent(QMouseEvent *) override {
        auto *datos = new QMimeData;
        datos->setData(QStringLiteral("text/uri-list"), m_lista);
        auto *arrastre = new QDrag(this);
        arrastre->setMimeData(datos);
        connect(arrastre, &QDrag::actionChanged, this, [](int accion) { di("accion", accion); });
        // File managers propose to move within a file system.
        const auto accion = arrastre->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        di("drop", accion);
        // The target still asks for the data after this.
        QTimer::singleShot(1500, qApp, &QCoreApplication::quit);
    }

private:
    QByteArray m_lista;
    bool m_visto = false;
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
