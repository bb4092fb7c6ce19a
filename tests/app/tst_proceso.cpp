// The child process, against a scripted child.
#include "banco.h"
#include "hijos/proceso.h"

#include <QElapsedTimer>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

// One run of the engine that is in its place: the chunks that the reader got,
// and the end.
struct Ensayo {
    QList<QByteArray> trozos;
    Proceso proceso;
    std::future<Proceso::Final> futuro;

    explicit Ensayo(const QList<QByteArray> &argumentos = {})
        : proceso({sitioDelMotor(), argumentos}) {
        (void)proceso.arranca();
        futuro = std::async(std::launch::async, [this] {
            return proceso.sigue(0, [this](const QByteArray &trozo) { trozos.append(trozo); });
        });
    }
    bool acabado(std::chrono::milliseconds plazo = 20s) {
        return futuro.wait_for(plazo) == std::future_status::ready;
    }
    // All that it said. The last chunk may be a part of its last words.
    QByteArray dicho() {
        const QByteArray final = fin().error;
        if (!trozos.isEmpty() && final.startsWith(trozos.last()))
            trozos.removeLast();
        return trozos.join() + final;
    }
    Proceso::Final fin() { return acabado() ? futuro.get() : Proceso::Final{-1, {}, "colgado"}; }
};

Proceso::Final corre(qsizetype maximo = 1 << 20) {
    Proceso proceso({sitioDelMotor(), {}});
    (void)proceso.arranca();
    return proceso.sigue(maximo);
}

} // namespace

class TstProceso : public QObject {
    Q_OBJECT

private slots:
    void losTrozosLleganEnOrdenYLasUltimasPalabrasSonDelFinal() {
        const Banco banco({"error 1/2 fich", "espera 150", "error eros\\nError: no\\n\\xff",
                           "espera 1200", "error dos\\n", "error Error: tres\\n", "espera 300",
                           "sale 3"});
        Ensayo ensayo;
        const auto fin = ensayo.fin();
        QCOMPARE(ensayo.trozos, (QList<QByteArray>{"1/2 fich", "eros\nError: no\n\xff"}));
        QCOMPARE(fin.error, "dos\nError: tres\n"); // although it was long in dying
        QCOMPARE(fin.estado, 3);
    }

    void argumentosEnteros() {
        const Banco banco({"argumentos args", "descriptores fds"});
        const QList<QByteArray> raros{"", "a b", "-l\n\"'$(x)", "\xff\xc3", "ñ"};
        const int suelto = ::open("/", O_RDONLY); // without O_CLOEXEC
        QCOMPARE(Ensayo(raros).fin().estado, 0);
        ::close(suelto);
        QCOMPARE(banco.argumentos(), raros);
        QCOMPARE(banco.lee("fds"), "3");
    }

    void elMotivoDeNoArrancar() {
        const Banco banco;
        Banco::ponFicheroComoMotor();
        QCOMPARE(Proceso({sitioDelMotor(), {}}).arranca(), ENOEXEC);
        QCOMPARE(Proceso({"/no/existe", {}}).arranca(), ENOENT);
    }

    void cierraSusTuberiasYSigueVivo() {
        const Banco banco({"error adiós\\n", "espera 100", "cierra", "espera 300", "sale 7"});
        Ensayo ensayo;
        QVERIFY(!ensayo.acabado(250ms));
        QCOMPARE(ensayo.fin().estado, 7);
        QCOMPARE(ensayo.trozos, QList<QByteArray>{"adiós\n"});
    }

    // A grandchild that keeps the pipes open, silent or not.
    void unNietoNoRetieneElFinal() {
        const Banco banco;
        for (const char *nieto : {"deja-nieto 20", "deja-nieto-hablador"}) {
            banco.ponMotor({"salida todo\\n", "error Error: roto\\n", nieto, "sale 1"});
            QElapsedTimer reloj;
            reloj.start();
            QVERIFY(Ensayo().dicho().startsWith("Error: roto\n"));
            const auto corrida = corre();
            QVERIFY(corrida.salida.startsWith("todo\n"));
            QVERIFY(corrida.error.startsWith("Error: roto\n"));
            QVERIFY(reloj.elapsed() < 10000);
        }
    }

    void unaInundacionSeLeeEntera() {
        const Banco banco({"inunda 20000000", "error Error: lleno\\n", "sale 1"});
        const QByteArray dicho = Ensayo().dicho();
        QCOMPARE(dicho.size(), 20000000 + 13);
        QVERIFY(dicho.endsWith("Error: lleno\n"));
    }

    void terminarYMorir() {
        const Banco banco({"espera 60000"});
        // An ignored or blocked signal of ours must not make the child deaf.
        (void)std::signal(SIGTERM, SIG_IGN);
        Ensayo ensayo;
        (void)std::signal(SIGTERM, SIG_DFL);
        ensayo.proceso.termina();
        QCOMPARE(ensayo.fin().estado, 128 + SIGTERM);
        ensayo.proceso.termina(); // after the end: nothing to signal

        banco.ponMotor({"cuenta parado", "senal " + QByteArray::number(SIGSTOP)});
        Ensayo parado;
        QTRY_VERIFY(banco.hay("parado"));
        QVERIFY(!parado.acabado(100ms));
        parado.proceso.termina();
        QCOMPARE(parado.fin().estado, 128 + SIGTERM);

        banco.ponMotor({"senal " + QByteArray::number(SIGUSR1)});
        QCOMPARE(Ensayo().fin().estado, 128 + SIGUSR1);
    }

    // However much; what nobody reads fits into its pipe.
    void correrYLeerSoloElError() {
        const Banco banco({"salida uno\\n", "inunda 3000000", "senal 9"});
        const auto error = corre(0);
        QCOMPARE(error.estado, 128 + SIGKILL);
        QCOMPARE(error.error.size(), 3000000);
    }

    void deLaSalidaSeLeeLoQueSePide() {
        const Banco banco({"salida 12345", "espera 60000"});
        const auto sobra = corre(4);
        QVERIFY(sobra.sobra && sobra.salida.isEmpty());
        QCOMPARE(sobra.estado, 128 + SIGTERM);
        banco.ponMotor({"salida 12345"});
        const auto cabe = corre(5);
        QVERIFY(!cabe.sobra);
        QCOMPARE(cabe.salida, "12345");
    }

    // The last one: after it every child is killed as it starts.
    void terminarlosATodos() {
        const Banco banco({"ignora", "cuenta sordo", "espera 60000"});
        Ensayo sordo;
        QTRY_VERIFY(banco.hay("sordo")); // it has read its script
        banco.ponMotor({"cuenta docil", "espera 60000"});
        Ensayo docil;
        QTRY_VERIFY(banco.hay("docil"));
        banco.ponMotor({"inunda 20000000"}); // waits for a reader that does not come
        auto atascado = std::async(std::launch::async, [] { return corre(); });
        QCOMPARE(atascado.wait_for(300ms), std::future_status::timeout);
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(400ms);
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(sordo.acabado() && docil.acabado());
        QCOMPARE(sordo.fin().estado, 128 + SIGKILL);
        QCOMPARE(docil.fin().estado, 128 + SIGTERM);
        QCOMPARE(atascado.get().estado, 128 + SIGTERM);

        banco.ponMotor({"ignora", "espera 60000"});
        QCOMPARE(corre(0).estado, 128 + SIGKILL);
    }
};

QTEST_GUILESS_MAIN(TstProceso)
#include "tst_proceso.moc"
