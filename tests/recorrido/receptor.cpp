// A window of another program, in the upper right corner, onto which files can
// be dropped: it copies them into the folder given, at once, the way a file
// manager does. Prints "listo" once it can be seen, "encima" when a drag with
// files comes over it, and after a drop "ofrece ACTIONS", the URI of each and
// "copiado", or the reason why not.
#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <filesystem>
#include <utility>

namespace fs = std::filesystem;

class Receptor : public QWidget {
public:
    explicit Receptor(fs::path carpeta)
        : QWidget(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint)
        , m_carpeta(std::move(carpeta)) {
        setAcceptDrops(true);
        setGeometry(screen()->geometry().right() - 200, 0, 200, 200);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        if (!std::exchange(m_visto, true))
            di("listo");
    }

    void dragEnterEvent(QDragEnterEvent *entra) override {
        if (!entra->mimeData()->hasUrls())
            return;
        // What many a target does: look at what comes while it is in the air.
        di(entra->mimeData()->urls().isEmpty() ? "nada encima" : "encima");
        entra->acceptProposedAction();
    }

    void dropEvent(QDropEvent *suelta) override {
        std::printf("ofrece %d\n", int(suelta->possibleActions()));
        for (const QByteArray &linea :
             suelta->mimeData()->data(QStringLiteral("text/uri-list")).split('\n'))
            if (!linea.trimmed().isEmpty())
                copia(linea.trimmed());
        suelta->acceptProposedAction();
        di("copiado");
    }

private:
    static void di(const char *que) {
        std::puts(que);
        std::fflush(stdout);
    }

    void copia(const QByteArray &uri) {
        std::puts(uri.constData());
        const fs::path ruta =
            QByteArray::fromPercentEncoding(uri.mid(int(sizeof "file://") - 1)).toStdString();
        std::error_code fallo;
        fs::copy(ruta, m_carpeta / ruta.filename(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks, fallo);
        if (fallo)
            std::puts(fallo.message().c_str());
    }

    fs::path m_carpeta;
    bool m_visto = false;
};

int main(int argc, char **argv) {
    const QApplication aplicacion(argc, argv);
    Receptor receptor(argv[1]);
    receptor.show();
    return QApplication::exec();
}
