// A thousand jobs of every ending leave the process as it was.
#include "banco.h"
#include "motor/proceso.h"

#include <QDir>
#include <QTest>

#include <sys/wait.h>

namespace {

constexpr int kTrabajos = 1000;
constexpr int kALaVez = 10;

struct Rastro {
    int descriptores = cuantos("/proc/self/fd");
    int hilos = cuantos("/proc/self/task");
    qsizetype claves;

    explicit Rastro(const Banco &banco)
        : claves(banco.claves().size()) {}
    bool operator==(const Rastro &) const = default;
};

} // namespace

class TstMuchos : public QObject {
    Q_OBJECT

private slots:
    void nadaQueda_data() {
        QTest::addColumn<QList<QByteArray>>("guion");
        QTest::addColumn<QString>("final");
        using Guion = QList<QByteArray>;
        QTest::newRow("éxito") << Guion{"error 1/1 ficheros (100%), 0 MiB\\n"} << "espera";
        QTest::newRow("fallo") << Guion{"error Error: x\\n", "sale 1"} << "espera";
        QTest::newRow("muerte") << Guion{"senal 9"} << "espera";
        QTest::newRow("cancelado") << Guion{"espera 60000"} << "cancela";
        QTest::newRow("sin dueño") << Guion{"espera 5"} << "suelta";
        QTest::newRow("sin motor") << Guion{} << "quita";
    }
    void nadaQueda() {
        QFETCH(QList<QByteArray>, guion);
        QFETCH(QString, final);
        const Banco banco;
        banco.ponMotor(guion);
        if (final == QStringLiteral("quita"))
            Banco::quitaMotor();
        const QUrl origen = banco.fichero("a", "a");
        const Rastro antes(banco);
        for (int hechos = 0; hechos < kTrabajos; hechos += kALaVez)
            tanda(banco, origen, final);
        QTRY_VERIFY(Rastro(banco) == antes);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child, not even a dead one
    }

    void unMotorQueNoArrancaSoloDejaSuClave() {
        const Banco banco;
        Banco::ponFicheroComoMotor("esto no es un programa", 0755);
        const QUrl origen = banco.fichero("a", "a");
        const Rastro antes(banco);
        for (int i = 0; i < kTrabajos; ++i)
            Motor().comprimir({origen}, banco.url("c.okz"), false, QStringLiteral("x"));
        Rastro despues(banco);
        QCOMPARE(despues.claves, kTrabajos);
        despues.claves = antes.claves;
        QVERIFY(despues == antes);
    }

private:
    static void tanda(const Banco &banco, const QUrl &origen, const QString &final) {
        std::vector<std::unique_ptr<Motor>> motores;
        std::vector<std::unique_ptr<Testigo>> testigos;
        for (int i = 0; i < kALaVez; ++i) {
            motores.push_back(std::make_unique<Motor>());
            testigos.push_back(std::make_unique<Testigo>(*motores.back()));
            motores.back()->comprimir({origen}, banco.url("c.okz"), false, QStringLiteral("x"));
            if (final == QStringLiteral("cancela"))
                motores.back()->cancelar();
            if (final == QStringLiteral("suelta"))
                motores.back().reset();
        }
        if (final == QStringLiteral("suelta"))
            return;
        for (const auto &testigo : testigos)
            QVERIFY(testigo->esperaFinal());
    }
};

QTEST_GUILESS_MAIN(TstMuchos)
#include "tst_muchos.moc"
