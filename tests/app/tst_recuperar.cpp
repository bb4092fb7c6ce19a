// The extraction jobs: command lines, states, endings.
#include "banco.h"
#include "motor/fondo.h"
#include "motor/proceso.h"

#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;

namespace {

const QStringList kTres{QStringLiteral("a"), QStringLiteral("b/ñ\\x0a"), QStringLiteral("-c")};

// A destination that holds 1000 bytes already.
struct Recuperacion : Taller {
    explicit Recuperacion(const Guion &guion)
        : Taller(guion) {
        fichero("d/antes", QByteArray(1000, 'x'));
    }
    void recupera(const QStringList &rutas, const QString &clave = {}) {
        motor.recuperarVarios(url("a.okz"), url("d"), rutas, clave);
    }
    [[nodiscard]] QString hecho(int bytes) const {
        return QStringLiteral("hecho %1 %1 %2").arg(bytes).arg(url("d").toString());
    }
};

} // namespace

class TstRecuperar : public QObject {
    Q_OBJECT

private slots:
    void unaTrasOtra() {
        Recuperacion trabajo({"argumentos args", "exige sésamo", "crea-entrada 12345",
                              "error Error: solo un aviso\\n"});
        trabajo.recupera(kTres, "sésamo");
        QCOMPARE(trabajo.testigo.vistos.size(), 1); // before the call returns
        QVERIFY(trabajo.testigo.esperaFinal());
        QCOMPARE(trabajo.testigo.dichos(),
                 (QStringList{"0 % recuperando 1 de 3…", "33 % recuperando 2 de 3…",
                              "67 % recuperando 3 de 3…", "100 % recuperando 3 de 3…",
                              trabajo.hecho(1015)}));
        const double segundos = std::get<Motor::Hecho>(trabajo.motor.estado()).segundos;
        QVERIFY(segundos > 0 && segundos < 20);

        QByteArrayList esperadas;
        for (const QString &ruta : kTres)
            esperadas << "extract|~/a.okz|-o|~/d|--file|" + ruta.toUtf8() +
                             "|--password-file|~/okz-*";
        QCOMPARE(trabajo.ordenes(), esperadas.join('|'));
        QCOMPARE(trabajo.argumentos().value(7), trabajo.argumentos().value(23)); // one for all runs
        QVERIFY(trabajo.claves().isEmpty());
    }

    void elPrimerFalloAcaba() {
        const QString sinMas = QStringLiteral("error No se pudo recuperar «b/ñ\\x0a».");
        const std::pair<QByteArray, QString> casos[]{
            {"error algo: error\\n", sinMas},
            {"error warning: error in header\\nError: bad password\\nError: x\\n",
             "error bad password"},
            {"error Error: \\n", "error "},
            {"senal 9", sinMas},
        };
        for (const auto &[dicho, texto] : casos) {
            Recuperacion trabajo(
                {"cuenta veces", "en 2 " + dicho, "en 2 sale 1", "crea-entrada x"});
            trabajo.recupera(kTres, "x");
            QVERIFY(trabajo.testigo.esperaFinal());
            QCOMPARE(trabajo.testigo.dichos(),
                     (QStringList{"0 % recuperando 1 de 3…", "33 % recuperando 2 de 3…", texto}));
            QCOMPARE(trabajo.lee("veces"), ".."); // the third is not tried
            QCOMPARE(trabajo.lee("d/a"), "x");
            QVERIFY(trabajo.claves().isEmpty());
        }
    }

    void todoDeUnaVez() {
        Recuperacion trabajo(
            {"argumentos args", "exige x", "crea fotos/a.jpg", "inunda 3000000", "salida ruido"});
        trabajo.recupera({}, "x");
        QVERIFY(trabajo.testigo.esperaFinal());
        QCOMPARE(trabajo.testigo.dichos(),
                 (QStringList{"0 % recuperando todo…", trabajo.hecho(1001)}));
        QCOMPARE(trabajo.ordenes(), "extract|~/a.okz|-o|~/d|--password-file|~/okz-*");
        QVERIFY(trabajo.claves().isEmpty());
    }

    void unPatron() {
        Recuperacion trabajo({"argumentos args", "error Error: uno\\nError: dos\\n", "sale 2"});
        trabajo.motor.recuperar(trabajo.url("a.okz"), trabajo.url("d"), "ñ*", {});
        QVERIFY(trabajo.testigo.esperaFinal());
        QCOMPARE(trabajo.testigo.dichos(), (QStringList{"0 % recuperando…", "error uno"}));
        QCOMPARE(trabajo.ordenes(), "extract|~/a.okz|-o|~/d|--file|ñ*");

        trabajo.ponMotor({"error error en minúscula\\n", "sale 1"});
        trabajo.recupera({});
        QVERIFY(trabajo.testigo.esperaFinal(2));
        QCOMPARE(trabajo.testigo.dichos().last(), QStringLiteral("error No se pudo recuperar."));
    }

    void sinMotor() {
        Recuperacion trabajo({});
        Banco::quitaMotor();
        trabajo.recupera({}, "x");
        trabajo.recupera(kTres, "x");
        const QString noHay = QStringLiteral("error No encuentro el motor.");
        QCOMPARE(trabajo.testigo.dichos(), (QStringList{noHay, noHay})); // and nothing before
        QVERIFY(trabajo.claves().isEmpty());

        Banco::ponFicheroComoMotor();
        trabajo.recupera(kTres, "x");
        QVERIFY(trabajo.testigo.esperaFinal(3));
        QVERIFY(trabajo.claves().isEmpty());
        trabajo.recupera({}, "x");
        QCOMPARE(trabajo.testigo.vistos.size(), 6); // all before it returns
        QCOMPARE(trabajo.testigo.dichos().filter("error No pude arrancar el motor.").size(), 2);
        QCOMPARE(trabajo.claves().size(), 1);
    }

    void nadaLaPara() {
        Recuperacion trabajo({"espera 50", "crea-entrada x"});
        trabajo.recupera(kTres);
        trabajo.motor.cancelar();
        QCOMPARE(trabajo.testigo.dichos().last(), QStringLiteral("reposo"));
        QVERIFY(trabajo.testigo.esperaFinal());
        QCOMPARE(trabajo.testigo.dichos().last(), trabajo.hecho(1003));

        auto breve = std::make_unique<Motor>(); // nor the end of its driver
        breve->recuperarVarios(trabajo.url("a.okz"), trabajo.url("e"), kTres, "x");
        breve.reset();
        colaDeFondo().waitForDone();
        QVERIFY(trabajo.hay("e/-c"));
        QVERIFY(trabajo.claves().isEmpty());
    }

    // The last one: after it every child is killed as it starts.
    void alSalirNoSigueConLasDemas() {
        Recuperacion trabajo({"cuenta veces", "espera 20"});
        QStringList muchas;
        for (int i = 0; i < 10000; ++i)
            muchas.append(QString::number(i));
        trabajo.recupera(muchas, "x");
        QTRY_VERIFY(trabajo.testigo.vistos.size() > 3);
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(5s);
        colaDeFondo().waitForDone();
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(trabajo.claves().isEmpty());
        QVERIFY(trabajo.testigo.esperaFinal());
        QVERIFY(trabajo.testigo.dichos().last().startsWith("error"));
        QVERIFY(trabajo.lee("veces").size() < 1000);
    }
};

QTEST_GUILESS_MAIN(TstRecuperar)
#include "tst_recuperar.moc"
