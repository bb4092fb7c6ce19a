// The child process, against a scripted child.
#include "banco.h"
#include "motor/proceso.h"

#include <QElapsedTimer>
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

    void terminarlosATodos() {
        const Banco banco;
        banco.ponMotor({"ignora", "error listo\\n", "espera 60000"});
        Ensayo sordo;
        QTest::qWait(200);
        banco.ponMotor({"espera 60000"});
        Ensayo docil;
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(400ms);
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(sordo.acabado(0ms) && docil.acabado(0ms));
        QCOMPARE(sordo.fin().estado, 128 + SIGKILL);
        QCOMPARE(docil.fin().estado, 128 + SIGTERM);
    }
};

QTEST_GUILESS_MAIN(TstProceso)
#include "tst_proceso.moc"
