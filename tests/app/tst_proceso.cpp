// The child process, against a scripted child.
#include "banco.h"
#include "motor/proceso.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <future>
#include <sys/stat.h>

using namespace std::chrono_literals;

namespace {

// One run to its end: the chunks that the reader got, and the end.
struct Ensayo {
    QList<QByteArray> trozos;
    std::promise<Proceso::Final> promesa;
    std::future<Proceso::Final> futuro = promesa.get_future();
    Proceso proceso;

    explicit Ensayo(const QList<QByteArray> &argumentos = {})
        : proceso({sitioDelMotor(), argumentos}) {
        [[maybe_unused]] const int fallo =
            proceso.lanza([this](const QByteArray &trozo) { trozos.append(trozo); },
                          [this](const Proceso::Final &fin) { promesa.set_value(fin); });
        Q_ASSERT(fallo == 0);
    }
    bool acabado(std::chrono::milliseconds plazo = 20s) {
        return futuro.wait_for(plazo) == std::future_status::ready;
    }
    Proceso::Final fin() { return acabado() ? futuro.get() : Proceso::Final{-1, "colgado"}; }
};

} // namespace

class TstProceso : public QObject {
    Q_OBJECT

private slots:
    void lasUltimasPalabrasSonDelFinal() {
        const Banco banco;
        banco.ponMotor(
            {"error uno\\n", "espera 300", "error dos\\n", "error Error: tres\\n", "sale 3"});
        Ensayo ensayo;
        const auto fin = ensayo.fin();
        QCOMPARE(ensayo.trozos, QList<QByteArray>{"uno\n"});
        QCOMPARE(fin.error, "dos\nError: tres\n");
        QCOMPARE(fin.estado, 3);
    }

    void losTrozosLleganEnOrden() {
        const Banco banco;
        banco.ponMotor({"error 1/2 fich", "espera 150", "error eros\\n\\xff", "espera 150",
                        "error fin\\n", "espera 150"});
        Ensayo ensayo;
        QCOMPARE(ensayo.fin().error, QByteArray());
        const QList<QByteArray> esperados{"1/2 fich", "eros\n\xff", "fin\n"};
        QCOMPARE(ensayo.trozos, esperados);
    }

    void argumentosEnteros() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "descriptores " + banco.ruta("fds")});
        const QList<QByteArray> raros{"", "a b", "-l\n\"'$(x)", "\xff\xc3", "ñ"};
        Ensayo ensayo(raros);
        QCOMPARE(ensayo.fin().estado, 0);
        QCOMPARE(Banco::lee(banco.ruta("args")), raros.join('\0') + '\0');
        QCOMPARE(Banco::lee(banco.ruta("fds")), "3");
    }

    void elMotivoDeNoArrancar() {
        const Banco banco;
        const auto nunca = [](const auto &) { QFAIL("no arrancó nada"); };
        QCOMPARE(Proceso({"/no/existe", {}}).lanza(nunca, nunca), ENOENT);
        banco.fichero("texto", "hola");
        ::chmod(banco.ruta("texto").constData(), 0755);
        QCOMPARE(Proceso({banco.ruta("texto"), {}}).lanza(nunca, nunca), ENOEXEC);
    }

    void cierraSusTuberiasYSigueVivo() {
        const Banco banco;
        banco.ponMotor({"error adiós\\n", "espera 100", "cierra", "espera 300", "sale 7"});
        Ensayo ensayo;
        QVERIFY(!ensayo.acabado(250ms));
        QCOMPARE(ensayo.fin().estado, 7);
        QCOMPARE(ensayo.trozos, QList<QByteArray>{"adi\xc3\xb3s\n"});
    }

    void unNietoNoRetieneElFinal() {
        const Banco banco;
        banco.ponMotor({"deja-nieto 3000", "error Error: roto\\n", "sale 1"});
        Ensayo ensayo;
        QVERIFY(ensayo.acabado(2s));
        QCOMPARE(ensayo.fin().error, "Error: roto\n");
    }

    void unaInundacionSeLeeEntera() {
        const Banco banco;
        banco.ponMotor({"inunda 20000000", "error Error: lleno\\n", "sale 1"});
        Ensayo ensayo;
        const auto fin = ensayo.fin();
        qsizetype leido = fin.error.size();
        for (const QByteArray &trozo : ensayo.trozos)
            leido += trozo.size();
        QCOMPARE(leido, 20000000 + 13);
        QVERIFY(fin.error.endsWith("Error: lleno\n"));
    }

    void terminarYMorir() {
        const Banco banco;
        banco.ponMotor({"error listo\\n", "espera 60000"});
        Ensayo ensayo;
        ensayo.proceso.termina();
        QCOMPARE(ensayo.fin().estado, 128 + SIGTERM);
        ensayo.proceso.termina(); // after the end: nothing to signal

        banco.ponMotor({"senal " + QByteArray::number(SIGQUIT)});
        QCOMPARE(Ensayo().fin().estado, 128 + SIGQUIT);
    }

    // An ignored or blocked signal of ours must not make the child deaf.
    void elHijoOyeLaPeticionDeTerminar() {
        const Banco banco;
        banco.ponMotor({"espera 60000"});
        ::signal(SIGTERM, SIG_IGN);
        Ensayo ensayo;
        ::signal(SIGTERM, SIG_DFL);
        ensayo.proceso.termina();
        QCOMPARE(ensayo.fin().estado, 128 + SIGTERM);
    }

    void correrHastaElFinal() {
        const Banco banco;
        banco.ponMotor({"salida uno\\n", "error dos\\n", "espera 50", "inunda-salida 3000000",
                        "error tres\\n", "sale 3"});
        const Proceso::Orden orden{sitioDelMotor(), {}};
        const auto todo = Proceso::corre(orden, Proceso::Lee::SalidaYError);
        QCOMPARE(todo.fallo, 0);
        QCOMPARE(todo.estado, 3);
        QCOMPARE(todo.salida.size(), 4 + 3000000);
        QCOMPARE(todo.error, "dos\ntres\n");

        // Standard error alone, however much; the other fits into its pipe.
        banco.ponMotor({"salida uno\\n", "inunda 3000000", "senal 9"});
        const auto error = Proceso::corre(orden, Proceso::Lee::Error);
        QCOMPARE(error.estado, 128 + SIGKILL);
        QCOMPARE(error.salida, QByteArray());
        QCOMPARE(error.error.size(), 3000000);

        QCOMPARE(Proceso::corre({"/no/existe", {}}, Proceso::Lee::Error).fallo, ENOENT);
    }

    void correrEsperaAlHijoYANadieMas() {
        const Banco banco;
        const Proceso::Orden orden{sitioDelMotor(), {}};
        banco.ponMotor({"error adiós\\n", "cierra", "espera 300", "sale 7"});
        QElapsedTimer reloj;
        reloj.start();
        const auto vivo = Proceso::corre(orden, Proceso::Lee::SalidaYError);
        QVERIFY(reloj.elapsed() >= 300);
        QCOMPARE(vivo.estado, 7);
        QCOMPARE(vivo.error, "adi\xc3\xb3s\n");

        // A grandchild that keeps the pipes open, silent or not.
        for (const char *nieto : {"deja-nieto 20000", "deja-nieto-hablador 20000"}) {
            banco.ponMotor({"salida todo\\n", "error Error: roto\\n", nieto, "sale 1"});
            reloj.start();
            const auto corrida = Proceso::corre(orden, Proceso::Lee::SalidaYError);
            QVERIFY(reloj.elapsed() < 10000);
            QVERIFY(corrida.salida.startsWith("todo\n"));
            QVERIFY(corrida.error.startsWith("Error: roto\n"));
        }
    }

    void sinLectorTodoEsDelFinal() {
        const Banco banco;
        banco.ponMotor({"error uno\\n", "espera 200", "inunda 3000000", "sale 1"});
        std::promise<Proceso::Final> promesa;
        Proceso proceso({sitioDelMotor(), {}});
        QCOMPARE(proceso.lanza({}, [&](const Proceso::Final &f) { promesa.set_value(f); }), 0);
        auto futuro = promesa.get_future();
        QCOMPARE(futuro.wait_for(20s), std::future_status::ready);
        QCOMPARE(futuro.get().error.size(), 4 + 3000000);
    }

    // The last one: after it every child is killed as it starts.
    void terminarlosATodos() {
        const Banco banco;
        banco.ponMotor({"ignora", "error listo\\n", "espera 60000"});
        Ensayo sordo;
        QTest::qWait(200);
        banco.ponMotor({"cuenta " + banco.ruta("docil"), "espera 60000"});
        Ensayo docil;
        QTRY_VERIFY(QFile::exists(banco.url("docil").toLocalFile())); // it has read its script
        banco.ponMotor({"inunda 20000000"}); // waits for a reader that does not come
        const Proceso::Orden orden{sitioDelMotor(), {}};
        auto atascado = std::async(std::launch::async, [&orden] {
            return Proceso::corre(orden, Proceso::Lee::SalidaYError);
        });
        QCOMPARE(atascado.wait_for(300ms), std::future_status::timeout);
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(400ms);
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(sordo.acabado(0ms) && docil.acabado(0ms));
        QCOMPARE(sordo.fin().estado, 128 + SIGKILL);
        QCOMPARE(docil.fin().estado, 128 + SIGTERM);
        QCOMPARE(atascado.get().estado, 128 + SIGTERM);

        banco.ponMotor({"ignora", "espera 60000"});
        QCOMPARE(Proceso::corre(orden, Proceso::Lee::Error).estado, 128 + SIGKILL);
    }
};

QTEST_GUILESS_MAIN(TstProceso)
#include "tst_proceso.moc"
