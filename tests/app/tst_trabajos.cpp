// What the five kinds of job have in common: their command lines, what they say
// of an engine that fails, and of one that is not there; and that thousands of
// them leave the process as it was. ORCALIN_TRABAJOS says how many; it tells how
// it stands after each third of them.
#include "banco.h"
#include "sistema/hilos.h"

#include <QDir>
#include <QTest>

#include <fstream>
#include <malloc.h>
#include <sys/wait.h>

namespace {

using Clave = std::optional<QString>;
// A job from its beginning to the words that it ends with: "(ya) " before them
// when it has ended as the call returns.
using Trabajo = QString (*)(const Banco &, const Clave &);

constexpr const char *kPide = "(pide la contraseña)";
const auto kRuta = QStringLiteral("b/ñ\\x0a");

QUrl archivo(const Banco &banco) {
    return banco.url("-x\n\xff.okz");
}

template<typename Hacer>
QString conMotor(Hacer hacer) {
    Motor motor;
    Testigo testigo(motor);
    hacer(motor);
    const bool ya = !std::holds_alternative<Motor::Trabajando>(motor.estado());
    (void)testigo.esperaFinal();
    QString final = testigo.dichos().constLast();
    return (ya ? "(ya) " : "") + final.remove(QStringLiteral("error "));
}

QString guarda(const Banco &banco, const Clave &clave) {
    return conMotor([&](Motor &motor) {
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, clave);
    });
}

QString recupera(const Banco &banco, const Clave &clave) {
    return conMotor([&](Motor &motor) {
        motor.recuperarVarios(archivo(banco), banco.url("d"), {kRuta}, clave);
    });
}

QString recuperaTodo(const Banco &banco, const Clave &clave) {
    return conMotor(
        [&](Motor &motor) { motor.recuperarVarios(archivo(banco), banco.url("d"), {}, clave); });
}

QString palabras(const FalloAlLeer &fallo) {
    const auto *otro = std::get_if<fallos::Otro>(&fallo);
    return otro != nullptr ? otro->texto : QString(kPide);
}

QString lista(const Banco &banco, const Clave &clave) {
    const auto listado = Motor::listar(archivo(banco), clave);
    if (const auto *fallo = std::get_if<FalloAlLeer>(&listado))
        return palabras(*fallo);
    QStringList rutas;
    for (const Entrada &entrada : std::get<QList<Entrada>>(listado))
        rutas.append(entrada.ruta);
    return rutas.join('|');
}

QString ve(const Banco &banco, const Clave &clave) {
    std::optional<Motor::Copia> copia;
    Motor::sacarParaVer(archivo(banco), kRuta, 1, clave,
                        [&copia](const Motor::Copia &dada) { copia = dada; });
    const QString ya = copia ? "(ya) " : "";
    (void)QTest::qWaitFor([&copia] { return copia.has_value(); }, 20000);
    const auto *fallo = std::get_if<FalloAlLeer>(&*copia);
    return ya + (fallo != nullptr ? palabras(*fallo) : QStringLiteral("copia"));
}

// Some are cancelled, the others lose their driver.
QString guardaMuchos(const Banco &banco, const Clave &clave) {
    std::array<Motor, 10> motores;
    for (Motor &motor : motores)
        motor.comprimir({banco.fichero("a", "")}, banco.url("c.okz"), false, clave);
    for (size_t i = 0; i < motores.size() / 2; ++i)
        motores[i].cancelar();
    return {};
}

constexpr std::array<Trabajo, 6> kTodos{guarda, lista, recupera, recuperaTodo, ve, guardaMuchos};
const std::vector<Trabajo> kTrabajos(kTodos.begin(), kTodos.end() - 1);
constexpr std::array kSinMas{"No se pudo guardar.", "No se puede leer este archivo.",
                             "No se pudo recuperar «b/ñ\\x0a».", "No se pudo recuperar.",
                             "No se pudo abrir «b/ñ\\x0a»."};

// Descriptors and threads.
QList<qsizetype> rastro() {
    QList<qsizetype> cuantos;
    for (const char *carpeta : {"/proc/self/fd", "/proc/self/task"})
        cuantos.append(QDir(carpeta).entryList(QDir::AllEntries | QDir::System).size());
    return cuantos;
}

// MiB in use, without what the allocator only keeps.
double memoria() {
    ::malloc_trim(0);
    qint64 virtuales = 0;
    qint64 residentes = 0;
    std::ifstream("/proc/self/statm") >> virtuales >> residentes;
    return static_cast<double>(residentes) * 4096 / (1 << 20);
}

constexpr double kHolgura = 3; // MiB: arenas and caches fill at first

} // namespace

class TstTrabajos : public QObject {
    Q_OBJECT

private slots:
    void susOrdenes() {
        const std::array<QByteArray, 5> ordenes{
            "compress|~/a|-o|~/c.okz|--level|19|--progress", "list|~/-x\n\xff.okz",
            "extract|~/-x\n\xff.okz|-o|~/d|--file|b/ñ\\x0a", "extract|~/-x\n\xff.okz|-o|~/d",
            "extract|~/-x\n\xff.okz|-o|~/orcalin-ver/*|--file|b/ñ\\x0a"};
        for (size_t i = 0; i < kTrabajos.size(); ++i) {
            const Banco banco({"argumentos args", "clave clave"});
            for (const Clave &clave : {Clave(), Clave(""), Clave("sésamo \n")})
                (void)kTrabajos[i](banco, clave);
            const QByteArray conClave =
                i == 0 ? "|--encrypt|--password-file|~/okz-*" : "|--password-file|~/okz-*";
            const QByteArray &orden = ordenes[i];
            QCOMPARE(banco.ordenes(), orden + '|' + orden + '|' + orden + conClave);
            QCOMPARE(banco.lee("clave"), "600 sésamo \n");
            QVERIFY(banco.claves().isEmpty());
        }
    }

    void elMotorFalla() {
        struct {
            Guion guion;
            QStringList dicho; // guardar, listar, the others; empty: no more
        } const casos[]{
            {{"error x\\nError: a\\nError: wrong password\\nfin\\n"},
             {"wrong password", kPide, "a"}},
            {{"error Error: antes\\nfatal error: disk full\\n"},
             {"fatal error: disk full", "antes", "antes"}},
            {{"error Password required: error\\n"}, {"Password required: error", "", ""}},
            {{"error Error: x: Error: y\\r\\n"}, {"x: y", "x: y", "x: y"}},
            {{"error IOError at 12"}, {"IOError at 12", "IOError at 12", "IOError at 12"}},
            {{"error Error: falta la contraseña\\n"},
             {"falta la contraseña", kPide, "falta la contraseña"}},
            {{"error Error: password \\xff\\n"}, {"", "", ""}},
            {{"error Error: lejano\\n", "espera 1200"}, {"", "lejano", "lejano"}},
            {{"salida Error: x\\n", "cierra", "espera 50"}, {"", "", ""}},
            {{"senal 9"}, {"", "", ""}},
        };
        for (const auto &[guion, dicho] : casos) {
            const Banco banco(guion + Guion{"sale 1"});
            for (size_t i = 0; i < kTrabajos.size(); ++i) {
                const QString &suyo = dicho[std::min<qsizetype>(static_cast<qsizetype>(i), 2)];
                QCOMPARE(kTrabajos[i](banco, "x"), suyo.isEmpty() ? QString(kSinMas[i]) : suyo);
                QVERIFY(banco.claves().isEmpty());
            }
        }
    }

    // The password file of a job that never started stays: nobody can tell
    // whether it was read.
    void sinMotor() {
        const QString noHay = QStringLiteral("(ya) No encuentro el motor.");
        const QString noArranca = QStringLiteral("No pude arrancar el motor.");
        const std::array<std::pair<QString, QString>, 5> casos{{
            {"(ya) No encuentro el motor «orcalin». Debería estar dentro de la app.",
             "(ya) No pude arrancar el motor: no es un programa para este ordenador."},
            {noHay.mid(5), noArranca},
            {noHay, noArranca},
            {noHay, "(ya) " + noArranca},
            {noHay, noArranca},
        }};
        const auto antes = rastro();
        for (size_t i = 0; i < kTrabajos.size(); ++i) {
            const Banco banco;
            QCOMPARE(kTrabajos[i](banco, "x"), casos[i].first);
            QVERIFY(banco.claves().isEmpty() && !banco.hay("orcalin-ver"));
            Banco::ponFicheroComoMotor();
            QCOMPARE(kTrabajos[i](banco, "x"), casos[i].second);
            QCOMPARE(banco.claves().size(), kTrabajos[i] == recupera ? 0 : 1);
        }
        QVERIFY(!EnMarcha::todos().hay()); // nothing that leaving would have to ask about
        colaDeFondo().waitForDone();
        QTRY_COMPARE(rastro(), antes);
    }

    void nadaQueda() {
        const size_t total = qEnvironmentVariable("ORCALIN_TRABAJOS", "450").toUInt();
        const Guion guiones[]{{"crea-entrada x"}, {"error Error: x\\n", "sale 1"}, {"senal 9"}};
        const auto antes = rastro();
        double lleno = 0; // MiB, once all caches are
        constexpr size_t kSeguidos = 50;
        std::optional<Banco> banco;
        for (size_t hechos = 0; hechos <= total; ++hechos) {
            if (hechos % (total / 3) == 0) {
                banco.reset();
                QTRY_COMPARE(rastro(), antes);
                qInfo("%5zu trabajos: %.1f MiB", hechos, memoria());
                lleno = lleno == 0 && hechos > 0 ? memoria() : lleno;
            }
            // The C library never gives back what a new environment takes.
            if (!banco || hechos % kSeguidos == 0)
                banco.emplace(guiones[hechos / kSeguidos % 3]);
            (void)kTodos[hechos % kTodos.size()](*banco, "x");
            colaDeFondo().waitForDone();
            QTRY_VERIFY(banco->claves().isEmpty());
        }
        banco.reset();
        QTRY_COMPARE(rastro(), antes);
        QVERIFY(memoria() < lleno + kHolgura);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child, not even a dead one
    }

    // As much as a pipe holds may be said before the listing is complete.
    void unListado() {
        const Banco banco({"salida d0755 0 b\\r\\n-0644 5 b/ñ\\n", "inunda 1000000",
                           "error Error: contraseña, solo un aviso\\n", "salida -0644 1 a"});
        QCOMPARE(lista(banco, "x"), QStringLiteral("b|b/ñ|a"));
    }
};

QTEST_GUILESS_MAIN(TstTrabajos)
#include "tst_trabajos.moc"
