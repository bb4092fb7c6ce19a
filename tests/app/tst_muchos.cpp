// Thousands of jobs of every kind and ending, by turns, leave the process as it
// was. ORCALIN_TRABAJOS says how many; it tells how it stands after each thousand.
#include "banco.h"
#include "motor/fondo.h"
#include "motor/proceso.h"

#include <QDir>
#include <QTest>

#include <array>
#include <fstream>
#include <future>
#include <malloc.h>
#include <sys/wait.h>

namespace {

constexpr int kALaVez = 10;
constexpr int kSinArrancar = 100;
constexpr double kHolgura = 6; // MiB: arenas and caches fill at first
const auto kClave = QStringLiteral("x");

// What lies in the temporary folder, but for what the thread sanitizer of a
// child leaves there when the child is killed as it starts.
qsizetype temporalesDe(const Banco &banco) {
    const QDir carpeta(banco.url("").toLocalFile());
    return carpeta.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() -
           carpeta.entryList({QStringLiteral("tsan.*")}).size();
}

// Descriptors and threads.
QList<int> rastro() {
    return {cuantos("/proc/self/fd"), cuantos("/proc/self/task")};
}

// MiB in use, without what the allocator only keeps.
double memoria() {
    ::malloc_trim(0);
    qint64 virtuales = 0;
    qint64 residentes = 0;
    std::ifstream("/proc/self/statm") >> virtuales >> residentes;
    return static_cast<double>(residentes) * 4096 / (1 << 20);
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

struct Caso {
    const char *nombre;
    Trabajos trabajos;
    Guion guion;
};

std::vector<Caso> casos() {
    std::vector<Caso> todos;
    const auto formas = [&](const char *nombre, const Trabajos &trabajos, const QByteArray &exito) {
        for (const Guion &guion : {Guion{exito}, {"error Error: x\\n", "sale 1"}, {"senal 9"}})
            todos.push_back({nombre, trabajos, guion});
    };
    formas("comprimir", conMotores(comprime), "error 1/1 ficheros (100%), 0 MiB\\n");
    formas("listar", listan, "salida -0644 1 x\\n");
    formas("recuperar dos", recuperan({"x", "y"}), "salida ruido");
    formas("recuperar todo", recuperan({}), "salida ruido");
    formas("sacar para ver", sacan, "crea-entrada x");
    todos.push_back({"sin motor", conMotores(comprime), {}});
    todos.push_back({"cancelado",
                     conMotores([](const Banco &banco, auto &motor) {
                         comprime(banco, motor);
                         motor->cancelar();
                     }),
                     {"espera 60000"}});
    todos.push_back({"sin dueño",
                     conMotores([](const Banco &banco, auto &motor) {
                         comprime(banco, motor);
                         motor.reset();
                     }),
                     {"espera 5"}});
    return todos;
}

// Some jobs of a case, after which nothing of them is left in the folder.
void hazAlgunos(const Caso &caso) {
    const Banco banco(caso.guion);
    if (caso.guion.isEmpty())
        Banco::quitaMotor();
    banco.fichero("a", "a");
    const auto antes = temporalesDe(banco);
    caso.trabajos(banco);
    colaDeFondo().waitForDone();
    Motor::limpiaTemporales();
    QTRY_COMPARE(temporalesDe(banco), antes);
}

} // namespace

class TstMuchos : public QObject {
    Q_OBJECT

private slots:
    void nadaQueda() {
        const int total = qEnvironmentVariable("ORCALIN_TRABAJOS", "3000").toInt();
        const auto todos = casos();
        const auto antes = rastro();
        double lleno = 0; // MiB, once all caches are
        for (int hechos = 0; hechos <= total; hechos += kALaVez) {
            if (hechos % 1000 == 0) {
                QTRY_COMPARE(rastro(), antes);
                qInfo("%5d trabajos: %.1f MiB, %d descriptores, %d hilos", hechos, memoria(),
                      antes[0], antes[1]);
                lleno = hechos == 1000 ? memoria() : lleno;
            }
            const Caso &caso = todos[static_cast<size_t>(hechos / kALaVez) % todos.size()];
            hazAlgunos(caso);
            QVERIFY2(!QTest::currentTestFailed(), caso.nombre);
        }
        QTRY_COMPARE(rastro(), antes);
        QVERIFY(memoria() < lleno + kHolgura);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child, not even a dead one
    }

    void unMotorQueNoArrancaSoloDejaSuClave() {
        const Banco banco;
        Banco::ponFicheroComoMotor();
        banco.fichero("a", "a");
        const auto antes = rastro();
        for (int i = 0; i < kSinArrancar; ++i)
            comprime(banco, std::make_unique<Motor>());
        QCOMPARE(banco.claves().size(), kSinArrancar);
        QCOMPARE(rastro(), antes);
    }
};

QTEST_GUILESS_MAIN(TstMuchos)
#include "tst_muchos.moc"
