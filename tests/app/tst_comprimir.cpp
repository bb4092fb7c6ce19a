// The compression job: command line, states, endings.
#include "banco.h"

#include <QFileInfo>
#include <QTest>
#include <QThread>

#include <csignal>
#include <sys/stat.h>

using Trabajando = Motor::Trabajando;
using Hecho = Motor::Hecho;

namespace {

const auto kPreparando = Motor::Estado(Trabajando{0, QStringLiteral("preparando…"), std::nullopt});

Motor::Estado trabajando(double pct, const QString &detalle) {
    return Trabajando{pct, detalle, std::nullopt};
}

} // namespace

class TstComprimir : public QObject {
    Q_OBJECT

private slots:
    void unTrabajoEntero() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "clave " + banco.ruta("clave"),
                        "error deriving key\\n", "espera 120",
                        "error 1/2 ficheros (50.0%), 1 MiB\\r2/2 ficheros (100.0%), 2 MiB\\n",
                        "espera 120", "salida ruido", "escribe-destino 333"});
        Motor motor;
        Testigo testigo(motor);
        const QUrl a = banco.fichero("a", QByteArray(600, 'a'));
        const QUrl b = banco.fichero("-b\nñ\xff", QByteArray(400, 'b'));
        const QUrl destino = banco.url("c.okz");
        motor.comprimir({b, a}, destino, true, QStringLiteral("sésamo"));
        QVERIFY(motor.estado() == kPreparando); // published before the call returns
        QVERIFY(testigo.esperaFinal());

        const QByteArray clave = Banco::argumentos(banco.ruta("args")).value(9);
        QVERIFY(clave.startsWith(banco.ruta("okz-")));
        const QList<QByteArray> esperados{"compress",          banco.ruta("-b\nñ\xff"),
                                          banco.ruta("a"),     "-o",
                                          banco.ruta("c.okz"), "--max",
                                          "--progress",        "--encrypt",
                                          "--password-file",   clave};
        QCOMPARE(Banco::argumentos(banco.ruta("args")), esperados);
        QCOMPARE(Banco::lee(banco.ruta("clave")), "600 s\xc3\xa9samo");
        QVERIFY(banco.claves().isEmpty());

        QCOMPARE(testigo.vistos.size(), 5);
        QVERIFY(testigo.vistos[0] == kPreparando);
        QVERIFY(testigo.vistos[1] == trabajando(0, QStringLiteral("preparando el cifrado…")));
        QVERIFY(testigo.vistos[2] == trabajando(0.5, QStringLiteral("1 de 2 archivos")));
        QVERIFY(testigo.vistos[3] == trabajando(1, QStringLiteral("2 de 2 archivos")));
        const auto hecho = std::get<Hecho>(testigo.vistos[4]);
        QCOMPARE(hecho.entrada, 1000);
        QCOMPARE(hecho.salida, 333);
        QCOMPARE(hecho.ruta, destino);
        QVERIFY(hecho.segundos >= 0.24 && hecho.segundos < 20);
    }

    void sinClaveNiMaximo_data() {
        QTest::addColumn<std::optional<QString>>("contrasena");
        QTest::newRow("ausente") << std::optional<QString>();
        QTest::newRow("vacía") << std::optional<QString>(QString());
    }
    void sinClaveNiMaximo() {
        QFETCH(std::optional<QString>, contrasena);
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args")});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, contrasena);
        QVERIFY(testigo.esperaFinal());
        const QList<QByteArray> esperados{
            "compress", banco.ruta("a"), "-o", banco.ruta("c.okz"), "--level", "19", "--progress"};
        QCOMPARE(Banco::argumentos(banco.ruta("args")), esperados);
        // A good end without an archive to read is a good end of size 0.
        QCOMPARE(std::get<Hecho>(testigo.vistos.last()).salida, 0);
    }

    void laEstimacionCuentaDesdeElPrincipio() {
        const Banco banco;
        banco.ponMotor({"espera 2100", "error 1/2 ficheros (50.0%), 1 MiB\\n", "espera 200"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, {});
        QVERIFY(testigo.esperaFinal());
        const auto restante = std::get<Trabajando>(testigo.vistos[1]).restante;
        QVERIFY(restante && *restante >= 2.1 && *restante < 5);
    }

    void elTextoDelFallo_data() {
        QTest::addColumn<QByteArray>("dicho");
        QTest::addColumn<QString>("texto");
        const auto fila = [](const char *nombre, const char *dicho, const char *texto) {
            QTest::newRow(nombre) << QByteArray(dicho) << QString::fromUtf8(texto);
        };
        fila("con prefijo", "aviso\\nError: a\\nError: wrong password\\nfin\\n", "wrong password");
        fila("en minúscula", "Error: antes\\nfatal error: disk full\\n", "fatal error: disk full");
        fila("dos prefijos", "Error: x: Error: y", "x: y");
        fila("ninguna", "algo fue mal\\n", "No se pudo guardar.");
        fila("nada", "", "No se pudo guardar.");
        fila("no es UTF-8", "Error: \\xff\\n", "No se pudo guardar.");
    }
    void elTextoDelFallo() {
        QFETCH(QByteArray, dicho);
        QFETCH(QString, texto);
        const Banco banco;
        banco.ponMotor({"error " + dicho, "sale 1"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, QStringLiteral("x"));
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.ultimoError(), texto);
        QVERIFY(banco.claves().isEmpty());
    }

    void lasPalabrasYaLeidasNoSonElFallo() {
        const Banco banco;
        banco.ponMotor({"error Error: lejano\\n", "espera 200", "sale 1"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, {});
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.ultimoError(), QStringLiteral("No se pudo guardar."));
        QCOMPARE(testigo.vistos.size(), 2);
    }

    void sinMotorNoSeIntentaNada() {
        const Banco banco;
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({}, banco.url("c.okz"), false, QStringLiteral("x"));
        QCOMPARE(testigo.vistos.size(), 1);
        QCOMPARE(
            testigo.ultimoError(),
            QStringLiteral("No encuentro el motor «orcalin». Debería estar dentro de la app."));
        QVERIFY(banco.claves().isEmpty());
    }

    void sinOrigenesNoPasaNada() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args")});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({}, banco.url("c.okz"), false, QStringLiteral("x"));
        QTest::qWait(100);
        QVERIFY(testigo.vistos.isEmpty());
        QVERIFY(!QFileInfo::exists(banco.url("args").toLocalFile()));
    }

    // The password file of a job that never started stays: nobody can tell
    // whether it was read.
    void unMotorQueNoArranca() {
        const Banco banco;
        Banco::ponFicheroComoMotor("esto no es un programa", 0755);
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, QStringLiteral("x"));
        QCOMPARE(testigo.vistos.size(), 2);
        QVERIFY(testigo.vistos[0] == kPreparando);
        QCOMPARE(testigo.ultimoError(),
                 QStringLiteral("No pude arrancar el motor: no es un programa "
                                "para este ordenador."));
        QCOMPARE(banco.claves().size(), 1);

        banco.ponMotor({"sale 0"}); // and the next job works
        motor.comprimir({banco.url("a")}, banco.url("c.okz"), false, {});
        QVERIFY(testigo.esperaFinal(2));
        QVERIFY(std::holds_alternative<Hecho>(motor.estado()));
    }

    void cancelarPublicaReposoYLuegoElFinal() {
        const Banco banco;
        banco.ponMotor({"error 1/2 ficheros (50.0%), 1 MiB\\n", "espera 60000"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, QStringLiteral("x"));
        QTRY_COMPARE(testigo.vistos.size(), 2);
        motor.cancelar();
        QVERIFY(motor.estado() == Motor::Estado(Motor::Reposo{}));
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.ultimoError(), QStringLiteral("No se pudo guardar."));
        QVERIFY(banco.claves().isEmpty());
    }

    void unMotorSordoNoEstorbaAlSiguiente() {
        const Banco banco;
        banco.ponMotor({"ignora", "error deriving key\\n", "espera 700", "sale 4"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, {});
        QTRY_COMPARE(testigo.vistos.size(), 2);
        motor.cancelar();
        banco.ponMotor({"escribe-destino 5"});
        motor.comprimir({banco.url("a")}, banco.url("d.okz"), false, {});
        QVERIFY(testigo.esperaFinal(2));
        QCOMPARE(std::count_if(testigo.vistos.begin(), testigo.vistos.end(),
                               [](const auto &e) { return std::holds_alternative<Hecho>(e); }),
                 1);
    }

    void loQueLlegaParaUnMotorQueYaNoEstaSePierde() {
        const Banco banco;
        banco.ponMotor({"error 1/2 ficheros (50.0%), 1 MiB\\n", "espera 300", "escribe-destino 7"});
        auto motor = std::make_unique<Motor>();
        motor->comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, QStringLiteral("x"));
        motor.reset();
        // The child runs on to its end, and its password file goes.
        QTRY_COMPARE(QFileInfo(banco.url("c.okz").toLocalFile()).size(), 7);
        QTRY_VERIFY(banco.claves().isEmpty());
    }

    void unaInundacionDeErroresNoParaLaVentana() {
        const Banco banco;
        banco.ponMotor({"inunda 4000000", "error \\nError: harto\\n", "sale 1"});
        Motor motor;
        Testigo testigo(motor);
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, {});
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.ultimoError(), QStringLiteral("harto"));
    }
};

QTEST_GUILESS_MAIN(TstComprimir)
#include "tst_comprimir.moc"
