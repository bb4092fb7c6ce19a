// What is opened and which screen it brings up.
#include "banco.h"
#include "escritoriofalso.h"
#include "inicio/abierto.h"
#include "inicio/orcalinapp.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

struct SistemaFalso : SistemaDeServicios {
    std::function<void(const QString &)> apunta;
    void registra(Recepcion &recepcion) override {
        apunta(recepcion.servicios().comprimir({}) ? "registra" : "?");
    }
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
        auto sistema = std::make_unique<SistemaFalso>();
        sistema->apunta = [&](const QString &paso) { pasos.append(paso); };
        Delegado delegado(std::move(sistema));
        delegado.applicationDidFinishLaunching([] { return false; });
        QVERIFY(banco.hay("orcalin-ver")); // another one's
        delegado.applicationDidFinishLaunching();
        QVERIFY(!banco.hay("orcalin-ver"));
        QCOMPARE(pasos, (QStringList{"registra", "refresca", "registra", "refresca"}));
        Delegado().applicationDidFinishLaunching(); // nobody to offer services to
    }

    void cadaCosaEstrenaPantalla() {
        EscritorioFalso escritorio;
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        auto &abierto = Abierto::compartido();
        const QPointer vacia(app.pantalla());
        QVERIFY(vacia && !app.explorador());
        const QList<QUrl> lista{url("/b"), url("/a.okz")};
        abierto.ponAComprimir(lista);
        QCoreApplication::processEvents();
        const QPointer llena(app.pantalla());
        QVERIFY(llena != vacia);
        QVERIFY(llena->origenes().isEmpty());
        llena->aparece();
        QCOMPARE(llena->origenes(), lista);
        llena->otraCosa();
        llena->aparece(); // what it began with is taken once
        QVERIFY(llena->origenes().isEmpty());
        abierto.ponAComprimir(lista); // the same again: nothing to do
        QCoreApplication::processEvents();
        QCOMPARE(app.pantalla(), llena.get());

        abierto.ponArchivo(url("/a.okz"));
        QCoreApplication::processEvents();
        QVERIFY(!app.pantalla());
        const QPointer primero(app.explorador());
        abierto.ponArchivo(url("/b.okz"));
        QCoreApplication::processEvents();
        QCOMPARE(app.explorador()->archivo(), url("/b.okz"));
        QTRY_VERIFY(!primero);

        app.guardarAlgo();
        QCoreApplication::processEvents();
        QVERIFY(app.pantalla() && !app.explorador());
        app.pantalla()->aparece();
        QCOMPARE(app.pantalla()->origenes(), lista); // the last one is there again
    }

    // With its screen gone there is nothing to look at, in front or not.
    void elFinalDeLoQueSiguioSinPantallaSeAvisa() {
        const Banco banco({"cuenta veces", "en 1 aguarda nunca", "en 2 aguarda uno",
                           "en 2 escribe-destino 3", "en 3 aguarda dos"});
        EscritorioFalso escritorio;
        escritorio.destino = banco.url("x.okz");
        escritorio.carpeta = banco.url("");
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        for (const char *veces : {".", ".."}) {
            app.guardarAlgo();
            QTRY_VERIFY(app.pantalla());
            app.pantalla()->suelta({banco.fichero("a", "12345")});
            app.pantalla()->guardar();
            QTRY_COMPARE(banco.lee("veces"), veces);
            if (veces == QByteArray("."))
                app.pantalla()->cancelar(); // of this one nobody wants to hear
            Abierto::compartido().ponArchivo(url("/a.okz"));
            QTRY_VERIFY(app.explorador());
        }
        app.explorador()->recuperarTodo();
        app.guardarAlgo();
        QTRY_VERIFY(!app.explorador());
        banco.fichero("uno", "");
        QTRY_COMPARE(escritorio.avisos.size(), 1);
        banco.fichero("dos", "");
        QTRY_COMPARE(escritorio.avisos.size(), 2);
        QCOMPARE(escritorio.avisos.first(),
                 QStringLiteral("Guardado en «x.okz»: 5 b  →  3 b\nahorras 2 b · 40% menos"));
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
        motor = std::make_unique<Motor>();
        motor->comprimir({origen}, banco.url("b.okz"), false, std::nullopt);
        motor->cancelar(); // nor does this one count
        QCOMPARE(sale.size(), 0);
        QVERIFY(salida.pide());
        QCOMPARE(sale.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TstInicio)
#include "tst_inicio.moc"
