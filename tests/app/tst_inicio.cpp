// What is opened and which screen it brings up.
#include "banco.h"
#include "escritoriofalso.h"
#include "inicio/abierto.h"
#include "inicio/orcalinapp.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

struct ProveedorFalso : ProveedorDeServicios {
    std::function<void(const QString &)> apunta;
    void registra() override { apunta("registra"); }
    void refresca() override { apunta("refresca"); }
};

} // namespace

class TstInicio : public QObject {
    Q_OBJECT

private slots:
    void init() {
        Abierto::compartido().ponArchivo(std::nullopt);
        Abierto::compartido().ponAComprimir({});
    }

    void losPasosDelArranque() {
        const Banco banco;
        banco.fichero("orcalin-ver/resto", "");
        QStringList pasos;
        auto proveedor = std::make_unique<ProveedorFalso>();
        proveedor->apunta = [&](const QString &paso) {
            pasos.append(paso + (banco.hay("orcalin-ver") ? " antes" : " después"));
        };
        Delegado(std::move(proveedor)).applicationDidFinishLaunching();
        QCOMPARE(pasos, (QStringList{"registra antes", "refresca antes"}));
        QVERIFY(!banco.hay("orcalin-ver"));
        Delegado().applicationDidFinishLaunching(); // nobody to offer services to
        banco.fichero("orcalin-ver/de-otro", "");
        Delegado().applicationDidFinishLaunching([] { return false; });
        QVERIFY(banco.hay("orcalin-ver/de-otro"));
    }

    void unArchivoTraeElExploradorYGuardarAlgoLaPantalla() {
        EscritorioFalso escritorio;
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        QVERIFY(app.pantalla() && !app.explorador());

        Abierto::compartido().ponArchivo(url("/a.okz"));
        QCoreApplication::processEvents();
        QVERIFY(!app.pantalla());
        const QPointer primero(app.explorador());
        QCOMPARE(primero->nombre(), QStringLiteral("a.okz"));

        Abierto::compartido().ponArchivo(url("/b.okz")); // a fresh one for each
        QCoreApplication::processEvents();
        QCOMPARE(app.explorador()->archivo(), url("/b.okz"));
        QVERIFY(app.explorador() != primero);
        QTRY_VERIFY(!primero);

        app.guardarAlgo();
        QCoreApplication::processEvents();
        QVERIFY(app.pantalla() && !app.explorador());
    }

    void cadaListaNuevaEstrenaPantalla() {
        EscritorioFalso escritorio;
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        const QPointer vacia(app.pantalla());
        auto &abierto = Abierto::compartido();
        abierto.ponArchivo(std::nullopt);
        abierto.ponAComprimir({url("/a"), url("/b.okz")});
        QCoreApplication::processEvents();
        const QPointer llena(app.pantalla());
        QVERIFY(llena != vacia);
        llena->aparece();
        QCOMPARE(llena->origenes().size(), 2);

        abierto.ponAComprimir({url("/a"), url("/b.okz")}); // the same again: nothing to do
        QCoreApplication::processEvents();
        QCOMPARE(app.pantalla(), llena.get());

        // Back from the browser, the last list is there again.
        abierto.ponArchivo(url("/c.okz"));
        QCoreApplication::processEvents();
        app.guardarAlgo();
        QCoreApplication::processEvents();
        QVERIFY(app.pantalla() != llena);
        app.pantalla()->aparece();
        QCOMPARE(app.pantalla()->origenes().size(), 2);
    }

    // With its screen gone there is nothing to look at, in front or not.
    void elFinalDeLoQueSiguioSinPantallaSeAvisa() {
        const Banco banco;
        const QUrl origen = banco.fichero("a", "12345");
        EscritorioFalso escritorio;
        escritorio.destino = banco.url("x.okz");
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        const auto guarda = [&](const Guion &guion) {
            banco.ponMotor(guion);
            app.pantalla()->suelta({origen});
            app.pantalla()->guardar();
        };
        const auto vaYVuelve = [&] {
            const QPointer<QObject> antes(app.pantalla() ? static_cast<QObject *>(app.pantalla())
                                                         : app.explorador());
            Abierto::compartido().ponArchivo(url("/b.okz"));
            QTRY_VERIFY(!antes);
            app.guardarAlgo();
            QTRY_VERIFY(app.pantalla());
        };
        guarda({"aguarda nunca"});
        app.pantalla()->cancelar(); // of this one nobody wants to hear
        vaYVuelve();
        guarda({"aguarda uno", "escribe-destino 3"});
        vaYVuelve();
        banco.fichero("uno", "");
        QTRY_COMPARE(escritorio.avisos.size(), 1);
        guarda({"aguarda dos", "error Error: lleno\\n", "sale 1"});
        vaYVuelve();
        banco.fichero("dos", "");
        QTRY_COMPARE(escritorio.avisos.size(), 2);

        Abierto::compartido().ponArchivo(url("/a.okz"));
        QTRY_VERIFY(app.explorador());
        banco.ponMotor({"aguarda tres"});
        escritorio.carpeta = banco.url("");
        app.explorador()->recuperarTodo();
        vaYVuelve();
        banco.fichero("tres", "");
        QTRY_COMPARE(escritorio.avisos.size(), 3);
        QCOMPARE(escritorio.avisos.first(2),
                 (QStringList{"Guardado en «x.okz»: 5 b  →  3 b\nahorras 2 b · 40% menos",
                              "No se pudo guardar: lleno"}));
        QVERIFY(escritorio.avisos.last().startsWith("Recuperado: De a.okz a «"));
        QCOMPARE(escritorio.ultimoAviso, Aviso::Siempre);
    }

    void salirPreguntaMientrasHayAlgoQuePerder() {
        const Banco banco({"cuenta veces", "en 1 aguarda ya", "en 2 aguarda luego"});
        const QUrl origen = banco.fichero("a", "a");
        Salida salida;
        const QSignalSpy sale(&salida, &Salida::sale);
        auto motor = std::make_unique<Motor>();
        motor->comprimir({origen}, banco.url("a.okz"), false, std::nullopt);
        QVERIFY(!salida.pide() && salida.pregunta());
        salida.sigue();
        QVERIFY(!salida.pregunta());

        QTRY_VERIFY(banco.hay("veces"));
        Motor otro;
        otro.recuperarVarios(url("/a.okz"), banco.url(""), {"a"}, std::nullopt);
        motor.reset(); // the job goes on without its screen
        QVERIFY(!salida.pide());
        QCOMPARE(salida.titular(), "¿Salir sin terminar de guardar y de recuperar?");
        banco.fichero("ya", "");
        QTRY_COMPARE(salida.titular(), "¿Salir sin terminar de recuperar?");
        QVERIFY(salida.pregunta());
        banco.fichero("luego", "");
        QTRY_VERIFY(!salida.pregunta()); // nothing is left to ask about
        QCOMPARE(sale.size(), 0);
        QVERIFY(salida.pide());
        QCOMPARE(sale.size(), 1);
    }

    void salirNoPreguntaPorLoCancelado() {
        Taller taller({"ignora", "aguarda ya"});
        taller.motor.comprimir({taller.fichero("a", "a")}, taller.url("a.okz"), false, {});
        taller.motor.cancelar();
        QVERIFY(Salida().pide());
        taller.fichero("ya", "");
        QVERIFY(taller.testigo.esperaFinal());
    }
};

QTEST_GUILESS_MAIN(TstInicio)
#include "tst_inicio.moc"
