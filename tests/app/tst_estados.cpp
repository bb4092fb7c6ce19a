// The states that a compression and an extraction go through.
#include "banco.h"
#include "hijos/proceso.h"
#include "sistema/hilos.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {

const auto kPreparando = QStringLiteral("0 % preparando…");
const QStringList kTres{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("-c")};

// A destination that holds 1000 bytes already.
struct Escena : Taller {
    explicit Escena(const Guion &guion)
        : Taller(guion) {
        fichero("d/antes", QByteArray(1000, 'x'));
    }
    void comprime(const QString &clave = {}) {
        motor.comprimir({fichero("a", "")}, url("c.okz"), false, clave);
    }
    void recupera(const QStringList &rutas, const QString &clave = {}) {
        motor.recuperarVarios(url("a.okz"), url("d"), rutas, clave);
    }
    [[nodiscard]] QString hecho(int bytes) const {
        return QStringLiteral("hecho %1 %1 %2").arg(bytes).arg(url("d").toString());
    }
    bool acabaCon(const QString &dicho) {
        return testigo.esperaFinal() && testigo.dichos().constLast() == dicho;
    }
};

} // namespace

class TstEstados : public QObject {
    Q_OBJECT

private slots:
    void unaCompresionEntera() {
        Escena escena({"argumentos args", "error deriving key\\n", "espera 120",
                       "error 1/2 ficheros (50.0%), 1 MiB\\r2/2 ficheros (100.0%), 2 MiB\\n",
                       "espera 120", "salida ruido", "escribe-destino 333"});
        const QUrl a = escena.fichero("a", QByteArray(600, 'a'));
        const QUrl b = escena.fichero("-b\nñ\xff", QByteArray(400, 'b'));
        const QUrl destino = escena.url("c.okz");
        escena.motor.comprimir({}, destino, false, "x");
        QVERIFY(escena.testigo.vistos.isEmpty()); // of nothing
        escena.motor.comprimir({b, a}, destino, true, {});
        QCOMPARE(escena.testigo.dichos(), QStringList{kPreparando}); // before the call returns
        QVERIFY(escena.testigo.esperaFinal());
        QCOMPARE(escena.testigo.dichos(),
                 (QStringList{kPreparando, "0 % preparando el cifrado…", "50 % 1 de 2 archivos",
                              "100 % 2 de 2 archivos",
                              "hecho 1000 333 " + destino.toString(QUrl::FullyEncoded)}));
        const double segundos = std::get<Motor::Hecho>(escena.motor.estado()).segundos;
        QVERIFY(segundos >= 0.24 && segundos < 20);
        QCOMPARE(escena.ordenes(), "compress|~/-b\nñ\xff|~/a|-o|~/c.okz|--max|--progress");
    }

    // The engine that was cancelled, deaf or not, is in nobody's way.
    void cancelarPublicaReposoYLuegoElFinal() {
        Escena escena({"ignora", "error deriving key\\n", "espera 700", "sale 4"});
        escena.comprime("x");
        QTRY_COMPARE(escena.testigo.vistos.size(), 2);
        escena.motor.cancelar();
        QCOMPARE(escena.testigo.dichos().constLast(), QStringLiteral("reposo"));
        escena.ponMotor({"error deriving key\\n", "espera 60000"});
        escena.comprime("x");
        QTRY_VERIFY(escena.testigo.dichos().count("0 % preparando el cifrado…") == 2);
        escena.motor.cancelar();
        QVERIFY(escena.testigo.esperaFinal(2));
        QCOMPARE(escena.testigo.dichos().count("error No se pudo guardar."), 2);
        QVERIFY(escena.claves().isEmpty());
    }

    void unaTrasOtra() {
        Escena escena({"argumentos args", "exige sésamo", "crea-entrada 12345",
                       "error Error: solo un aviso\\n"});
        escena.recupera(kTres, "sésamo");
        QCOMPARE(escena.testigo.vistos.size(), 1); // before the call returns
        QVERIFY(escena.acabaCon(escena.hecho(1015)));
        QCOMPARE(escena.testigo.dichos().mid(0, 4),
                 (QStringList{"0 % recuperando 1 de 3…", "33 % recuperando 2 de 3…",
                              "67 % recuperando 3 de 3…", "100 % recuperando 3 de 3…"}));
        QCOMPARE(escena.argumentos().value(13), "b");
        QCOMPARE(escena.argumentos().value(7), escena.argumentos().value(23)); // one for all runs
        QVERIFY(escena.claves().isEmpty());
    }

    void elPrimerFalloAcaba() {
        Escena escena({"cuenta veces", "en 2 sale 1", "crea-entrada x"});
        escena.recupera(kTres, "x");
        QVERIFY(escena.acabaCon("error No se pudo recuperar «b»."));
        QCOMPARE(escena.lee("veces"), ".."); // the third is not tried
        QCOMPARE(escena.lee("d/a"), "x");
    }

    void deUnaVez() {
        Escena escena({"argumentos args", "crea fotos/a.jpg", "inunda 3000000", "salida ruido"});
        escena.recupera({});
        QVERIFY(escena.acabaCon(escena.hecho(1001)));
        QCOMPARE(escena.testigo.dichos().constFirst(), QStringLiteral("0 % recuperando todo…"));
        escena.motor.recuperar(escena.url("a.okz"), escena.url("d"), "ñ*", {});
        QVERIFY(escena.testigo.esperaFinal(2));
        QCOMPARE(escena.testigo.dichos().value(2), QStringLiteral("0 % recuperando…"));
        QCOMPARE(escena.ordenes(), "extract|~/a.okz|-o|~/d|extract|~/a.okz|-o|~/d|--file|ñ*");
    }

    void nadaParaUnaExtraccion() {
        Escena escena({"espera 50", "crea-entrada x"});
        escena.recupera(kTres);
        escena.motor.cancelar();
        QCOMPARE(escena.testigo.dichos().constLast(), QStringLiteral("reposo"));
        QVERIFY(escena.acabaCon(escena.hecho(1003)));
    }

    // Not through its driver, but by itself; what is out stays.
    void unaExtraccionSeCancelaPorSuTrabajo() {
        const Banco banco({"cuenta veces", "crea-entrada x", "en 2 espera 60000"});
        EnMarcha enMarcha;
        Motor motor(enMarcha);
        Testigo testigo(motor);
        motor.recuperarVarios(banco.url("a.okz"), banco.url("d"), kTres, "x");
        QTRY_COMPARE(banco.lee("veces"), "..");
        QVERIFY(!EnMarcha::todos().hay());
        QVERIFY(enMarcha.hay(Obra::Recuperar) && !enMarcha.hay(Obra::Guardar));
        enMarcha.vivos().constFirst()->cancela();
        QVERIFY(!enMarcha.hay());
        QVERIFY(std::holds_alternative<Motor::Trabajando>(motor.estado())); // the child lives on
        QTRY_VERIFY(enMarcha.vivos().isEmpty());
        QCOMPARE(testigo.dichos().constLast(), QStringLiteral("reposo"));
        QCOMPARE(banco.lee("veces"), "..");
        QVERIFY(banco.hay("d/a") && banco.claves().isEmpty());
    }

    // The last one: after it every child is killed as it starts.
    void alSalirNoSigueConLasDemas() {
        Escena escena({"cuenta veces", "espera 20"});
        QStringList muchas;
        for (int i = 0; i < 10000; ++i)
            muchas.append(QString::number(i));
        escena.recupera(muchas, "x");
        QTRY_VERIFY(escena.testigo.vistos.size() > 3);
        Proceso::terminaTodos(5s);
        colaDeFondo().waitForDone();
        QVERIFY(escena.claves().isEmpty());
        QVERIFY(escena.testigo.esperaFinal());
        QVERIFY(escena.testigo.dichos().constLast().startsWith("error"));
        QVERIFY(escena.lee("veces").size() < 1000);
    }
};

QTEST_GUILESS_MAIN(TstEstados)
#include "tst_estados.moc"
