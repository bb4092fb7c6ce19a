// What is opened and which screen it brings up.
#include "banco.h"
#include "escritoriofalso.h"
#include "inicio/abierto.h"
#include "inicio/orcalinapp.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

QUrl url(const char *ruta) {
    return QUrl::fromLocalFile(QString::fromUtf8(ruta));
}

// A provider that notes what it is told, and what had not happened by then.
class ProveedorFalso : public ProveedorDeServicios {
public:
    ProveedorFalso(QStringList &pasos, const Banco &banco)
        : m_pasos(pasos)
        , m_banco(banco) {}
    void registra() override { apunta(QStringLiteral("registra")); }
    void refresca() override { apunta(QStringLiteral("refresca")); }

private:
    void apunta(const QString &paso) {
        const bool quedan = QDir(m_banco.url("orcalin-ver").toLocalFile()).exists();
        m_pasos.append(paso + (quedan ? QStringLiteral(" con temporales") : QString()));
    }
    QStringList &m_pasos;
    const Banco &m_banco;
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
        QDir().mkdir(banco.url("orcalin-ver").toLocalFile());
        QStringList pasos;
        Delegado delegado(std::make_unique<ProveedorFalso>(pasos, banco));
        delegado.applicationDidFinishLaunching();
        const QStringList esperados{"registra con temporales", "refresca con temporales"};
        QCOMPARE(pasos, esperados);
        QVERIFY(!QDir(banco.url("orcalin-ver").toLocalFile()).exists());
        Delegado().applicationDidFinishLaunching(); // nobody to offer services to
    }

    void losFicherosAbiertos_data() {
        QTest::addColumn<QList<QUrl>>("dados");
        QTest::addColumn<QUrl>("archivo");
        using Urls = QList<QUrl>;
        QTest::newRow("con otro") << Urls{url("/a.txt"), url("/b.okz")} << url("/b.okz");
        QTest::newRow("en mayúsculas") << Urls{url("/x.OKZ")} << url("/x.OKZ");
        QTest::newRow("dos") << Urls{url("/2.okz"), url("/1.okz")} << url("/2.okz");
        QTest::newRow("ninguno") << Urls{url("/a.txt"), url("/okz")} << QUrl();
        QTest::newRow("nada") << Urls{} << QUrl();
    }
    void losFicherosAbiertos() {
        QFETCH(QList<QUrl>, dados);
        QFETCH(QUrl, archivo);
        Delegado::application(dados);
        QVERIFY(!Abierto::compartido().archivo()); // not before the call has returned
        QCoreApplication::processEvents();
        QCOMPARE(Abierto::compartido().archivo().value_or(QUrl()), archivo);
    }

    void seAvisaAntesDeCambiar() {
        auto &abierto = Abierto::compartido();
        QList<bool> habia;
        const auto enlace = connect(&abierto, &Abierto::vaACambiar, this,
                                    [&] { habia.append(abierto.archivo().has_value()); });
        abierto.ponArchivo(url("/a.okz"));
        abierto.ponArchivo(std::nullopt);
        disconnect(enlace);
        const QList<bool> esperado{false, true};
        QCOMPARE(habia, esperado);
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

    void salirPreguntaMientrasSeComprime() {
        const Banco banco;
        banco.ponMotor({"aguarda " + banco.ruta("ya"), "sale 0"});
        const QUrl origen = banco.fichero("a", "a");
        Salida salida;
        const QSignalSpy sale(&salida, &Salida::sale);
        auto motor = std::make_unique<Motor>();
        motor->comprimir({origen}, banco.url("a.okz"), false, std::nullopt);
        QVERIFY(!salida.pide() && salida.pregunta());
        salida.sigue();
        QVERIFY(!salida.pregunta());

        motor.reset(); // the job goes on without its screen
        QVERIFY(!salida.pide());
        banco.fichero("ya", "");
        QTRY_VERIFY(!salida.pregunta()); // nothing is left to ask about
        QCOMPARE(sale.size(), 0);
        QVERIFY(salida.pide());
        QCOMPARE(sale.size(), 1);
    }

    void salirNoPreguntaPorLoCancelado() {
        const Banco banco;
        banco.ponMotor({"ignora", "aguarda " + banco.ruta("ya")});
        Salida salida;
        Motor motor;
        motor.comprimir({banco.fichero("a", "a")}, banco.url("a.okz"), false, std::nullopt);
        Testigo testigo(motor);
        motor.cancelar();
        QVERIFY(salida.pide());
        banco.fichero("ya", "");
        QVERIFY(testigo.esperaFinal());
    }

    void abrirPorElDialogoYPorArrastre() {
        EscritorioFalso escritorio;
        OrcalinApp app(std::make_unique<Delegado>(), escritorio);
        app.abrirDialogo(); // cancelled
        QCoreApplication::processEvents();
        QVERIFY(app.pantalla());
        app.pantalla()->suelta({url("/a.okz")});
        QCoreApplication::processEvents();
        QCOMPARE(app.explorador()->archivo(), url("/a.okz"));
        escritorio.archivo = url("/b.okz");
        app.abrirDialogo();
        QCoreApplication::processEvents();
        QCOMPARE(app.explorador()->archivo(), url("/b.okz"));
    }
};

QTEST_GUILESS_MAIN(TstInicio)
#include "tst_inicio.moc"
