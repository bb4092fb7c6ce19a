// The extraction jobs: command lines, states, endings.
#include "banco.h"
#include "motor/fondo.h"
#include "motor/proceso.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>

using namespace std::chrono_literals;
using Trabajando = Motor::Trabajando;
using Hecho = Motor::Hecho;

namespace {

const QStringList kTres{QStringLiteral("a"), QStringLiteral("b/ñ\\x0a"), QStringLiteral("-c")};

Motor::Estado trabajando(double pct, const char *detalle) {
    return Trabajando{pct, QString::fromUtf8(detalle), std::nullopt};
}

Motor::Estado error(const char *texto) {
    return Motor::Error{QString::fromUtf8(texto)};
}

// A destination, which holds 1000 bytes already.
QUrl destinoEn(const Banco &banco) {
    QDir(banco.url("").toLocalFile()).mkdir(QStringLiteral("d"));
    banco.fichero("d/antes", QByteArray(1000, 'x'));
    return banco.url("d");
}

bool esHecho(const Motor::Estado &estado, qint64 bytes, const QUrl &ruta) {
    const auto *hecho = std::get_if<Hecho>(&estado);
    return hecho != nullptr && hecho->entrada == bytes && hecho->salida == bytes &&
           hecho->ruta == ruta && hecho->segundos > 0 && hecho->segundos < 20;
}

} // namespace

class TstRecuperar : public QObject {
    Q_OBJECT

private slots:
    void unaTrasOtra() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "exige sésamo", "crea-entrada 12345",
                        "error Error: solo un aviso\\n"});
        const QUrl destino = destinoEn(banco);
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destino, kTres, QStringLiteral("sésamo"));
        QVERIFY(motor.estado() == trabajando(0, "recuperando 1 de 3…"));
        QVERIFY(testigo.esperaFinal());

        QCOMPARE(testigo.vistos.size(), 5);
        QVERIFY(testigo.vistos[0] == trabajando(0, "recuperando 1 de 3…"));
        QVERIFY(testigo.vistos[1] == trabajando(1.0 / 3, "recuperando 2 de 3…"));
        QVERIFY(testigo.vistos[2] == trabajando(2.0 / 3, "recuperando 3 de 3…"));
        QVERIFY(testigo.vistos[3] == trabajando(1, "recuperando 3 de 3…"));
        QVERIFY(esHecho(testigo.vistos[4], 1015, destino));

        const auto args = Banco::argumentos(banco.ruta("args"));
        const QByteArray clave = args.value(7); // one for all runs
        QVERIFY(clave.startsWith(banco.ruta("okz-")));
        QList<QByteArray> esperados;
        for (const QString &ruta : kTres)
            esperados << "extract" << banco.ruta("a.okz") << "-o" << banco.ruta("d") << "--file"
                      << ruta.toUtf8() << "--password-file" << clave;
        QCOMPARE(args, esperados);
        QVERIFY(banco.claves().isEmpty());
    }

    void unaSola() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "crea-entrada 1234567890"});
        const QUrl destino = destinoEn(banco);
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destino, {QStringLiteral("a")}, QString());
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.vistos.size(), 3);
        QVERIFY(testigo.vistos[0] == trabajando(0, "recuperando 1 de 1…"));
        QVERIFY(testigo.vistos[1] == trabajando(1, "recuperando 1 de 1…"));
        QVERIFY(esHecho(testigo.vistos[2], 1010, destino));
        QCOMPARE(Banco::argumentos(banco.ruta("args")).size(), 6);
    }

    void elPrimerFalloAcaba_data() {
        QTest::addColumn<QByteArray>("dicho");
        QTest::addColumn<QByteArray>("texto");
        QTest::newRow("sin más") << QByteArray("error algo: error\\n")
                                 << QByteArray("No se pudo recuperar «b/ñ\\x0a».");
        QTest::newRow("el primer Error")
            << QByteArray("error warning: error in header\\nError: bad password\\nError: x\\n")
            << QByteArray("bad password");
        QTest::newRow("nada tras el prefijo") << QByteArray("error Error: \\n") << QByteArray("");
        QTest::newRow("muerto") << QByteArray("senal 9")
                                << QByteArray("No se pudo recuperar «b/ñ\\x0a».");
    }
    void elPrimerFalloAcaba() {
        QFETCH(QByteArray, dicho);
        QFETCH(QByteArray, texto);
        const Banco banco;
        banco.ponMotor(
            {"cuenta " + banco.ruta("veces"), "en 2 " + dicho, "en 2 sale 1", "crea-entrada x"});
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destinoEn(banco), kTres, QStringLiteral("x"));
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.vistos.size(), 3);
        QVERIFY(testigo.vistos[1] == trabajando(1.0 / 3, "recuperando 2 de 3…"));
        QVERIFY(testigo.vistos[2] == error(texto));
        QCOMPARE(Banco::lee(banco.ruta("veces")), ".."); // the third is not tried
        QCOMPARE(Banco::lee(banco.ruta("d/a")), "x");
        QVERIFY(banco.claves().isEmpty());
    }

    void todoDeUnaVez() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "exige x", "crea fotos/a.jpg",
                        "inunda 3000000", "salida ruido"});
        const QUrl destino = destinoEn(banco);
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destino, {}, QStringLiteral("x"));
        QVERIFY(testigo.esperaFinal());
        QCOMPARE(testigo.vistos.size(), 2);
        QVERIFY(testigo.vistos[0] == trabajando(0, "recuperando todo…"));
        QVERIFY(esHecho(testigo.vistos[1], 1001, destino));
        const auto args = Banco::argumentos(banco.ruta("args"));
        const QList<QByteArray> esperados{"extract",       banco.ruta("a.okz"), "-o",
                                          banco.ruta("d"), "--password-file",   args.value(5)};
        QCOMPARE(args, esperados);
        QVERIFY(banco.claves().isEmpty());
    }

    void unPatron() {
        const Banco banco;
        banco.ponMotor(
            {"argumentos " + banco.ruta("args"), "error Error: uno\\nError: dos\\n", "sale 2"});
        Motor motor;
        Testigo testigo(motor);
        motor.recuperar(banco.url("a.okz"), banco.url("d"), QStringLiteral("ñ*"), std::nullopt);
        QVERIFY(motor.estado() == trabajando(0, "recuperando…"));
        QVERIFY(testigo.esperaFinal());
        QVERIFY(testigo.vistos.last() == error("uno"));
        const QList<QByteArray> esperados{
            "extract", banco.ruta("a.okz"), "-o", banco.ruta("d"), "--file", "ñ*"};
        QCOMPARE(Banco::argumentos(banco.ruta("args")), esperados);

        banco.ponMotor({"error error en minúscula\\n", "sale 1"});
        motor.recuperar(banco.url("a.okz"), banco.url("d"), std::nullopt, std::nullopt);
        QVERIFY(testigo.esperaFinal(2));
        QVERIFY(testigo.vistos.last() == error("No se pudo recuperar."));
    }

    void sinMotor() {
        const Banco banco;
        Motor motor;
        Testigo testigo(motor);
        for (const QStringList &rutas : {QStringList(), kTres}) {
            motor.recuperarVarios(banco.url("a.okz"), banco.url("d"), rutas, QStringLiteral("x"));
            QVERIFY(motor.estado() == error("No encuentro el motor."));
        }
        QCOMPARE(testigo.vistos.size(), 2); // and nothing before
        QVERIFY(banco.claves().isEmpty());

        Banco::ponFicheroComoMotor("esto no es un programa", 0755);
        motor.recuperarVarios(banco.url("a.okz"), banco.url("d"), kTres, QStringLiteral("x"));
        QVERIFY(testigo.esperaFinal(3));
        QVERIFY(motor.estado() == error("No pude arrancar el motor."));
        QCOMPARE(testigo.vistos.size(), 4);
        QVERIFY(banco.claves().isEmpty());

        motor.recuperar(banco.url("a.okz"), banco.url("d"), std::nullopt, QStringLiteral("x"));
        QVERIFY(motor.estado() == error("No pude arrancar el motor.")); // before it returns
        QCOMPARE(testigo.vistos.size(), 6);
        QCOMPARE(banco.claves().size(), 1);
    }

    void nadaLaPara() {
        const Banco banco;
        banco.ponMotor({"espera 100", "crea-entrada x"});
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destinoEn(banco), kTres, {});
        motor.cancelar();
        QVERIFY(motor.estado() == Motor::Estado(Motor::Reposo{}));
        QVERIFY(testigo.esperaFinal());
        QVERIFY(esHecho(motor.estado(), 1003, banco.url("d")));
    }

    void sinSuMotorTermina() {
        const Banco banco;
        banco.ponMotor({"espera 50", "crea-entrada x"});
        auto motor = std::make_unique<Motor>();
        motor->recuperarVarios(banco.url("a.okz"), destinoEn(banco), kTres, QStringLiteral("x"));
        motor.reset();
        colaDeFondo().waitForDone();
        QVERIFY(QFileInfo::exists(banco.url("d/-c").toLocalFile()));
        QVERIFY(banco.claves().isEmpty());
    }

    // The last one: after it every child is killed as it starts.
    void alSalirNoSigueConLasDemas() {
        const Banco banco;
        banco.ponMotor({"cuenta " + banco.ruta("veces"), "espera 20"});
        QStringList muchas;
        for (int i = 0; i < 10000; ++i)
            muchas.append(QString::number(i));
        Motor motor;
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), destinoEn(banco), muchas, QStringLiteral("x"));
        QTRY_VERIFY(testigo.vistos.size() > 3);
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(5s);
        colaDeFondo().waitForDone();
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(banco.claves().isEmpty());
        QVERIFY(testigo.esperaFinal());
        QVERIFY(std::holds_alternative<Motor::Error>(motor.estado()));
        QVERIFY(Banco::lee(banco.ruta("veces")).size() < 1000);
    }
};

QTEST_GUILESS_MAIN(TstRecuperar)
#include "tst_recuperar.moc"
