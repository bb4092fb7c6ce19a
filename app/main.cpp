#include "bus/cliente.h"
#include "bus/entrega.h"
#include "bus/puesto.h"
#include "escritorio/escritoriolibre.h"
#include "hijos/proceso.h"
#include "inicio/dosarranques.h"
#include "inicio/orcalinapp.h"
#include "inicio/orden.h"
#include "inicio/recepcion.h"
#include "puertos/identidad.h"
#include "senales.h"
#include "sistema/hilos.h"
#include "vistas/vistas.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace std::chrono_literals;

constexpr auto kGraciaAlSalir = 5s;
constexpr auto kPlazoDeEntrega = 5s; // then it hangs, and the user still wants a window
constexpr auto kEsperaSinNadie = 10s;

// Qt's own texts in the file panels; ours are Spanish as they stand.
void hablaEspanol(QTranslator &traductor) {
    if (traductor.load(QLocale(QLocale::Spanish), QStringLiteral("qtbase"), QStringLiteral("_"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&traductor);
}

void presentate() {
    QCoreApplication::setApplicationName(QStringLiteral("orcalin"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORCALIN_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("orcalin"));
    QGuiApplication::setDesktopFileName(QLatin1String(kIdentidad));
}

int cliente(int argc, char **argv, const Peticion &peticion) {
    const QCoreApplication aplicacion(argc, argv);
    return bus::cliente(peticion);
}

// To the application that runs already, if there is one.
DosArranques::Fin entrega(const Peticion &peticion) {
    const auto entrega = bus::entrega(peticion, bus::Arranque::No, kPlazoDeEntrega);
    if (entrega.fin == DosArranques::Fin::Rechazada)
        bus::quejate(entrega.texto);
    return entrega.fin;
}

void atiende(Recepcion &recepcion, const Peticion &peticion) {
    const auto rechazo = recepcion.atiende(peticion);
    if (!rechazo)
        return;
    bus::quejate(*rechazo);
    QCoreApplication::exit(EXIT_FAILURE);
}

// What there is to do goes through the event loop, where it can end it.
void empieza(Recepcion &recepcion, const Orden &orden, const std::optional<vistas::Ventana> &v) {
    if (orden.modo == Orden::Modo::Ventana)
        enPrincipal([&recepcion, orden] { atiende(recepcion, orden.peticion); });
    else
        QTimer::singleShot(kEsperaSinNadie, qApp, [&v] {
            if (!v)
                QCoreApplication::exit();
        });
}

int trabaja(const Orden &orden, DosArranques &arranques) {
    EscritorioLibre escritorio;
    OrcalinApp app(std::make_unique<Delegado>(std::make_unique<Puesto>()), escritorio);
    Recepcion &recepcion = app.delegado().recepcion();
    std::optional<vistas::Ventana> ventana;
    if (orden.modo == Orden::Modo::Ventana)
        ventana.emplace(app); // before the rest gets ready, which is done meanwhile
    QObject::connect(&recepcion, &Recepcion::alFrente, &app, [&](const Ficha &ficha) {
        if (!ventana)
            ventana.emplace(app);
        if (!ventana->alFrente(ficha))
            QCoreApplication::exit(EXIT_FAILURE);
    });
    QObject::connect(&recepcion, &Recepcion::salir, &app, [&] {
        if (!app.salida()->pide())
            emit recepcion.alFrente({});
    });
    escritorio.alVolver([&](const Ficha &ficha) { emit recepcion.alFrente(ficha); });
    QObject::connect(app.salida(), &Salida::sale, qApp, [] { QCoreApplication::exit(); });

    std::optional<int> acabado;
    app.delegado().applicationDidFinishLaunching([&] {
        acabado = arranques.trasPedirElNombre(Puesto::esNuestro());
        return !acabado;
    });
    if (acabado)
        return *acabado;
    empieza(recepcion, orden, ventana);
    const int estado = QCoreApplication::exec();
    Puesto::deja();
    return estado;
}

} // namespace

int main(int argc, char **argv) {
    // A parent that ignores this would have the engine's exit status lost.
    (void)std::signal(SIGCHLD, SIG_DFL);
    auto orden = Orden::lee(argc, argv);
    if (!orden) {
        (void)std::fputs("Uso: orcalin-app [ARCHIVO…]\n"
                         "     orcalin-app --servicio comprimir|abrir ARCHIVO…\n",
                         stderr);
        return 2;
    }
    orden->peticion.ficha = Ficha::delEntorno();
    if (orden->modo == Orden::Modo::Cliente)
        return cliente(argc, argv, orden->peticion);
    Ficha::quitaDelEntorno();
    // Before there is anything of a window: a second start should be gone at once.
    DosArranques arranques(*orden, entrega);
    if (const auto estado = arranques.alEmpezar())
        return *estado;

    vistas::prepara();
    const QApplication aplicacion(argc, argv);
    presentate();
    salEnOrden();
    QTranslator traductor;
    hablaEspanol(traductor);
    const int estado = trabaja(*orden, arranques);
    // No job outlives the application: its password file would stay behind.
    Proceso::terminaTodos(kGraciaAlSalir);
    colaDeFondo().waitForDone();
    return estado;
}
