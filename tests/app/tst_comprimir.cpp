// The compression job: command line, states, endings.
#include "banco.h"

#include <QFileInfo>
#include <QTest>

namespace {

const auto kPreparando = QStringLiteral("0 % preparando…");
const auto kNoSePudo = QStringLiteral("error No se pudo guardar.");

struct Compresion : Taller {
    using Taller::Taller;

    void comprime(const std::optional<QString> &clave = {}) {
        motor.comprimir({fichero("a", "")}, url("c.okz"), false, clave);
    }
    // What it publishes from the beginning to the end.
    QStringList entera(const std::optional<QString> &clave = {}) {
        testigo.vistos.clear();
        comprime(clave);
        (void)testigo.esperaFinal();
        return testigo.dichos();
    }
};

} // namespace

class TstComprimir : public QObject {
    Q_OBJECT

private slots:
    void unTrabajoEntero() {
        Taller taller({"argumentos args", "clave clave", "error deriving key\\n", "espera 120",
                       "error 1/2 ficheros (50.0%), 1 MiB\\r2/2 ficheros (100.0%), 2 MiB\\n",
                       "espera 120", "salida ruido", "escribe-destino 333"});
        const QUrl a = taller.fichero("a", QByteArray(600, 'a'));
        const QUrl b = taller.fichero("-b\nñ\xff", QByteArray(400, 'b'));
        const QUrl destino = taller.url("c.okz");
        taller.motor.comprimir({b, a}, destino, true, QStringLiteral("sésamo"));
        QCOMPARE(taller.testigo.dichos(), QStringList{kPreparando}); // before the call returns
        QVERIFY(taller.testigo.esperaFinal());
        const QStringList dichos{kPreparando, "0 % preparando el cifrado…", "50 % 1 de 2 archivos",
                                 "100 % 2 de 2 archivos",
                                 "hecho 1000 333 " + destino.toString(QUrl::FullyEncoded)};
        QCOMPARE(taller.testigo.dichos(), dichos);
        const double segundos = std::get<Motor::Hecho>(taller.motor.estado()).segundos;
        QVERIFY(segundos >= 0.24 && segundos < 20);

        QCOMPARE(taller.ordenes(), "compress|~/-b\nñ\xff|~/a|-o|~/c.okz|--max|--progress|"
                                   "--encrypt|--password-file|~/okz-*");
        QCOMPARE(taller.lee("clave"), "600 sésamo");
        QVERIFY(taller.claves().isEmpty());
    }

    void sinClaveNiMaximo() {
        Compresion trabajo({"argumentos args"});
        const QByteArray una = "compress|~/a|-o|~/c.okz|--level|19|--progress";
        // A good end without an archive to read is a good end of size 0.
        QVERIFY(trabajo.entera().last().startsWith("hecho 0 0 "));
        QVERIFY(trabajo.entera(QString()).last().startsWith("hecho 0 0 "));
        QCOMPARE(trabajo.ordenes(), una + '|' + una);
    }

    void elTextoDelFallo() {
        const std::pair<const char *, QString> casos[]{
            {"aviso\\nError: a\\nError: wrong password\\nfin\\n", "error wrong password"},
            {"Error: antes\\nfatal error: disk full\\n", "error fatal error: disk full"},
            {"Error: x: Error: y", "error x: y"},
            {"algo fue mal\\n", kNoSePudo},
            {"Error: \\xff\\n", kNoSePudo},
            {"Error: lejano\\n\nespera 1200", kNoSePudo}, // long before the end
        };
        for (const auto &[dicho, texto] : casos) {
            Compresion trabajo({QByteArray("error ") + dicho, "sale 1"});
            QCOMPARE(trabajo.entera("x"), (QStringList{kPreparando, texto}));
            QVERIFY(trabajo.claves().isEmpty());
        }
    }

    // The password file of a job that never started stays: nobody can tell
    // whether it was read.
    void sinOrigenesOSinMotor() {
        Compresion trabajo(Guion{"sale 0"});
        trabajo.motor.comprimir({}, trabajo.url("c.okz"), false, "x");
        QVERIFY(trabajo.testigo.vistos.isEmpty());

        Banco::quitaMotor();
        trabajo.motor.comprimir({}, trabajo.url("c.okz"), false, "x");
        QCOMPARE(trabajo.testigo.dichos(), QStringList{"error No encuentro el motor «orcalin». "
                                                       "Debería estar dentro de la app."});
        QVERIFY(trabajo.claves().isEmpty());

        Banco::ponFicheroComoMotor();
        QCOMPARE(trabajo.entera("x").first(), kPreparando);
        QCOMPARE(trabajo.claves().size(), 1);
        QVERIFY(!EnMarcha::compresiones().hay()); // nothing that leaving would have to ask about
    }

    void cancelarPublicaReposoYLuegoElFinal() {
        Compresion trabajo({"error 1/2 ficheros (50.0%), 1 MiB\\n", "espera 60000"});
        trabajo.comprime("x");
        QTRY_COMPARE(trabajo.testigo.vistos.size(), 2);
        trabajo.motor.cancelar();
        QCOMPARE(trabajo.testigo.dichos().last(), QStringLiteral("reposo"));
        QVERIFY(trabajo.testigo.esperaFinal());
        QCOMPARE(trabajo.testigo.dichos().last(), kNoSePudo);
        QVERIFY(trabajo.claves().isEmpty());
    }

    void unMotorSordoNoEstorbaAlSiguiente() {
        Compresion trabajo({"ignora", "error deriving key\\n", "espera 700", "sale 4"});
        trabajo.comprime();
        QTRY_COMPARE(trabajo.testigo.vistos.size(), 2);
        trabajo.motor.cancelar();
        trabajo.ponMotor({"sale 0"});
        trabajo.comprime();
        QVERIFY(trabajo.testigo.esperaFinal(2));
        QCOMPARE(trabajo.testigo.dichos().filter("hecho").size(), 1);
    }

    // The child runs on to its end, and its password file goes.
    void loQueLlegaParaUnMotorQueYaNoEstaSePierde() {
        const Banco banco(
            {"error 1/2 ficheros (50.0%), 1 MiB\\n", "espera 300", "escribe-destino 7"});
        auto motor = std::make_unique<Motor>();
        motor->comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, "x");
        motor.reset();
        QTRY_COMPARE(banco.lee("c.okz").size(), 7);
        QTRY_VERIFY(banco.claves().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstComprimir)
#include "tst_comprimir.moc"
