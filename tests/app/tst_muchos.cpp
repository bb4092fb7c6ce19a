// A thousand jobs of every ending leave the process as it was.
#include "banco.h"
#include "motor/fondo.h"
#include "motor/proceso.h"

#include <QDir>
#include <QTest>

#include <array>
#include <future>
#include <sys/wait.h>

namespace {

constexpr int kTrabajos = 1000;
constexpr int kALaVez = 10;

// What lies in the temporary folder, but for what the thread sanitizer of a
// child leaves there when the child is killed as it starts.
qsizetype temporalesDe(const Banco &banco) {
    const QDir carpeta(banco.url("").toLocalFile());
    return carpeta.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() -
           carpeta.entryList({QStringLiteral("tsan.*")}).size();
}

struct Rastro {
    int descriptores = cuantos("/proc/self/fd");
    int hilos = cuantos("/proc/self/task");
    qsizetype claves;
    qsizetype temporales;

    explicit Rastro(const Banco &banco)
        : claves(banco.claves().size())
        , temporales(temporalesDe(banco)) {}
    bool operator==(const Rastro &) const = default;
};

// Some jobs of a kind that reads an archive, at once, and the wait for their ends.
using Trabajos = void (*)(const Banco &banco);
const auto kClave = QStringLiteral("x");

void listan(const Banco &banco) {
    std::vector<std::future<void>> todos;
    for (int i = 0; i < kALaVez; ++i)
        todos.push_back(std::async(std::launch::async,
                                   [&banco] { (void)Motor::listar(banco.url("a.okz"), kClave); }));
}

void recuperan(const Banco &banco, const QStringList &rutas) {
    std::array<Motor, kALaVez> motores;
    std::vector<std::unique_ptr<Testigo>> testigos;
    for (Motor &motor : motores) {
        testigos.push_back(std::make_unique<Testigo>(motor));
        motor.recuperarVarios(banco.url("a.okz"), banco.url("d"), rutas, kClave);
    }
    for (const auto &testigo : testigos)
        QVERIFY(testigo->esperaFinal());
}

void recuperanDos(const Banco &banco) {
    recuperan(banco, {QStringLiteral("x"), QStringLiteral("y")});
}

void recuperanTodo(const Banco &banco) {
    recuperan(banco, {});
}

void sacan(const Banco &banco) {
    int dados = 0;
    for (int i = 0; i < kALaVez; ++i)
        Motor::sacarParaVer(banco.url("a.okz"), QStringLiteral("x"), 1, kClave,
                            [&dados](const Motor::Copia &) { ++dados; });
    QVERIFY(QTest::qWaitFor([&dados] { return dados == kALaVez; }, 20000));
}

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

    void nadaQuedaAlLeer_data() {
        QTest::addColumn<Trabajos>("trabajos");
        QTest::addColumn<QList<QByteArray>>("guion");
        const QList<QByteArray> fallo{"error Error: x\\n", "sale 1"};
        const QList<QByteArray> muerte{"senal 9"};
        const auto filas = [&](const char *nombre, Trabajos trabajos, const QByteArray &exito) {
            QTest::addRow("%s, éxito", nombre) << trabajos << QList<QByteArray>{exito};
            QTest::addRow("%s, fallo", nombre) << trabajos << fallo;
            QTest::addRow("%s, muerte", nombre) << trabajos << muerte;
        };
        filas("listar", listan, "salida -0644 1 x\\n");
        filas("recuperar dos", recuperanDos, "salida ruido");
        filas("recuperar todo", recuperanTodo, "salida ruido");
        filas("sacar para ver", sacan, "crea-entrada x");
    }
    void nadaQuedaAlLeer() {
        QFETCH(Trabajos, trabajos);
        QFETCH(QList<QByteArray>, guion);
        const Banco banco;
        banco.ponMotor(guion);
        const Rastro antes(banco);
        for (int hechos = 0; hechos < kTrabajos; hechos += kALaVez)
            trabajos(banco);
        colaDeFondo().waitForDone();
        Motor::limpiaTemporales();
        QTRY_VERIFY(Rastro(banco) == antes);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
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
        despues.temporales -= kTrabajos;
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
