// Hundreds of jobs of every kind and ending leave the process as it was.
#include "banco.h"
#include "motor/fondo.h"
#include "motor/proceso.h"

#include <QDir>
#include <QTest>

#include <array>
#include <future>
#include <sys/wait.h>

namespace {

constexpr int kTrabajos = 250;
constexpr int kALaVez = 10;
const auto kClave = QStringLiteral("x");

// What lies in the temporary folder, but for what the thread sanitizer of a
// child leaves there when the child is killed as it starts.
qsizetype temporalesDe(const Banco &banco) {
    const QDir carpeta(banco.url("").toLocalFile());
    return carpeta.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() -
           carpeta.entryList({QStringLiteral("tsan.*")}).size();
}

// Descriptors, threads and temporary files.
QList<qsizetype> rastro(const Banco &banco) {
    return {cuantos("/proc/self/fd"), cuantos("/proc/self/task"), temporalesDe(banco)};
}

// Some jobs of a kind at once, and the wait for their ends.
using Trabajos = std::function<void(const Banco &banco)>;

// Those with a driver each; `hacer` starts one.
template<typename Hacer>
Trabajos conMotores(Hacer hacer) {
    return [hacer](const Banco &banco) {
        std::array<std::unique_ptr<Motor>, kALaVez> motores;
        std::vector<std::unique_ptr<Testigo>> testigos;
        for (auto &motor : motores) {
            motor = std::make_unique<Motor>();
            testigos.push_back(std::make_unique<Testigo>(*motor));
            hacer(banco, motor);
        }
        for (size_t i = 0; i < motores.size(); ++i)
            QVERIFY(!motores[i] || testigos[i]->esperaFinal());
    };
}

void comprime(const Banco &banco, const std::unique_ptr<Motor> &motor) {
    motor->comprimir({banco.url("a")}, banco.url("c.okz"), false, kClave);
}

// These entries, or everything.
Trabajos recuperan(const QStringList &rutas) {
    return conMotores([rutas](const Banco &banco, auto &motor) {
        motor->recuperarVarios(banco.url("a.okz"), banco.url("d"), rutas, kClave);
    });
}

void listan(const Banco &banco) {
    std::vector<std::future<void>> todos;
    for (int i = 0; i < kALaVez; ++i)
        todos.push_back(std::async(std::launch::async,
                                   [&banco] { (void)Motor::listar(banco.url("a.okz"), kClave); }));
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
        QTest::addColumn<Trabajos>("trabajos");
        QTest::addColumn<Guion>("guion");
        const auto filas = [](const char *nombre, const Trabajos &trabajos,
                              const QByteArray &exito) {
            QTest::addRow("%s, éxito", nombre) << trabajos << Guion{exito};
            QTest::addRow("%s, fallo", nombre) << trabajos << Guion{"error Error: x\\n", "sale 1"};
            QTest::addRow("%s, muerte", nombre) << trabajos << Guion{"senal 9"};
        };
        filas("comprimir", conMotores(comprime), "error 1/1 ficheros (100%), 0 MiB\\n");
        filas("listar", listan, "salida -0644 1 x\\n");
        filas("recuperar dos", recuperan({"x", "y"}), "salida ruido");
        filas("recuperar todo", recuperan({}), "salida ruido");
        filas("sacar para ver", sacan, "crea-entrada x");
        QTest::newRow("sin motor") << conMotores(comprime) << Guion{};
        QTest::newRow("cancelado") << conMotores([](const Banco &banco, auto &motor) {
            comprime(banco, motor);
            motor->cancelar();
        }) << Guion{"espera 60000"};
        QTest::newRow("sin dueño") << conMotores([](const Banco &banco, auto &motor) {
            comprime(banco, motor);
            motor.reset();
        }) << Guion{"espera 5"};
    }
    void nadaQueda() {
        QFETCH(Trabajos, trabajos);
        QFETCH(Guion, guion);
        const Banco banco(guion);
        if (guion.isEmpty())
            Banco::quitaMotor();
        banco.fichero("a", "a");
        const auto antes = rastro(banco);
        for (int hechos = 0; hechos < kTrabajos; hechos += kALaVez)
            trabajos(banco);
        colaDeFondo().waitForDone();
        Motor::limpiaTemporales();
        QTRY_COMPARE(rastro(banco), antes);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child, not even a dead one
    }

    void unMotorQueNoArrancaSoloDejaSuClave() {
        const Banco banco;
        Banco::ponFicheroComoMotor();
        banco.fichero("a", "a");
        const auto antes = rastro(banco);
        for (int i = 0; i < kTrabajos; ++i)
            comprime(banco, std::make_unique<Motor>());
        QCOMPARE(banco.claves().size(), kTrabajos);
        auto despues = rastro(banco);
        despues.last() -= kTrabajos;
        QCOMPARE(despues, antes);
    }
};

QTEST_GUILESS_MAIN(TstMuchos)
#include "tst_muchos.moc"
