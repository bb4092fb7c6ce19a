#include "escritorio/escritoriolibre.h"
#include "motor/fondo.h"
#include "motor/proceso.h"
#include "motor/ruta.h"
#include "orcalinapp.h"
#include "senales.h"
#include "vistas/vistas.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>
#include <QWindow>

#include <csignal>

namespace {

constexpr std::chrono::seconds kGraciaAlSalir{5};

// Before Qt decodes the arguments: a name need not be valid UTF-8.
QList<QUrl> ficherosDe(int argc, char **argv) {
    const QByteArray aqui = QFile::encodeName(QDir::currentPath());
    QList<QUrl> urls;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argumento = argv[i];
        if (argumento.startsWith("file:"))
            urls.append(QUrl::fromEncoded(argumento));
        else if (!argumento.isEmpty())
            urls.append(ruta::url(argumento.startsWith('/') ? argumento : aqui + '/' + argumento));
    }
    return urls;
}

// Qt's own texts in the file panels; ours are Spanish as they stand.
void hablaEspanol(QTranslator &traductor) {
    if (traductor.load(QLocale(QLocale::Spanish), QStringLiteral("qtbase"), QStringLiteral("_"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&traductor);
}

} // namespace

int main(int argc, char **argv) {
    // A parent that ignores this would have the engine's exit status lost.
    (void)std::signal(SIGCHLD, SIG_DFL);
    const QList<QUrl> ficheros = ficherosDe(argc, argv);

    vistas::prepara();
    const QApplication aplicacion(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orcalin"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORCALIN_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("orcalin"));
    QGuiApplication::setDesktopFileName(QStringLiteral("es.orcalin.Orcalin"));
    salEnOrden();
    QTranslator traductor;
    hablaEspanol(traductor);

    int estado = 0;
    {
        EscritorioLibre escritorio;
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        app.delegado().applicationDidFinishLaunching();
        Delegado::application(ficheros);
        const vistas::Ventana ventana(app);
        escritorio.alVolver([](const QString &) {
            for (QWindow *w : QGuiApplication::topLevelWindows())
                w->requestActivate();
        });
        estado = ventana.abierta() ? QCoreApplication::exec() : EXIT_FAILURE;
    }
    // No job outlives the application: its password file would stay behind.
    Proceso::terminaTodos(kGraciaAlSalir);
    colaDeFondo().waitForDone();
    return estado;
}
