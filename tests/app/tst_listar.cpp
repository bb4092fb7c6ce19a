// The listing job: command line, failures, engines that misbehave.
#include "banco.h"
#include "motor/proceso.h"

#include <QElapsedTimer>
#include <QTest>

#include <chrono>
#include <future>

using namespace std::chrono_literals;
using fallos::Otro;
using fallos::PideContrasena;

namespace {

const auto kNada = QStringLiteral("No se puede leer este archivo.");

bool esFallo(const Motor::Listado &listado, const FalloAlLeer &fallo) {
    const auto *dado = std::get_if<FalloAlLeer>(&listado);
    return dado != nullptr && *dado == fallo;
}

qsizetype entradas(const Motor::Listado &listado) {
    const auto *dadas = std::get_if<QList<Entrada>>(&listado);
    return dadas != nullptr ? dadas->size() : -1;
}

} // namespace

class TstListar : public QObject {
    Q_OBJECT

private slots:
    void unListado() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "clave " + banco.ruta("clave"),
                        "salida d0755 0 b\\r\\n-0644 5000000000 b/ñ\\r\\n",
                        "error Error: contraseña, solo un aviso\\n", "salida -0644 1 a"});
        const auto listado = Motor::listar(banco.url("-x\n\xff.okz"), QStringLiteral("sésamo \n"));
        QCOMPARE(entradas(listado), 3);
        const auto &leidas = std::get<QList<Entrada>>(listado);
        QCOMPARE(leidas[0].ruta, QStringLiteral("b"));
        QVERIFY(leidas[0].tipo == 'd');
        QCOMPARE(leidas[1].ruta, QStringLiteral("b/ñ"));
        QCOMPARE(leidas[1].bytes, 5000000000);
        QCOMPARE(leidas[2].ruta, QStringLiteral("a"));

        const auto args = Banco::argumentos(banco.ruta("args"));
        QVERIFY(args.value(3).startsWith(banco.ruta("okz-")));
        const QList<QByteArray> esperados{"list", banco.ruta("-x\n\xff.okz"), "--password-file",
                                          args.value(3)};
        QCOMPARE(args, esperados);
        QCOMPARE(Banco::lee(banco.ruta("clave")), "600 s\xc3\xa9samo \n");
        QVERIFY(banco.claves().isEmpty());
    }

    void sinContrasena() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args")});
        QCOMPARE(entradas(Motor::listar(banco.url("a.okz"), std::nullopt)), 0);
        QCOMPARE(entradas(Motor::listar(banco.url("a.okz"), QString())), 0);
        const QList<QByteArray> una{"list", banco.ruta("a.okz")};
        QCOMPARE(Banco::argumentos(banco.ruta("args")), una + una);
    }

    void porQueNoSeLee_data() {
        QTest::addColumn<QByteArray>("dicho");
        QTest::addColumn<FalloAlLeer>("fallo");
        const auto fila = [](const char *nombre, const char *dicho, const FalloAlLeer &fallo) {
            QTest::newRow(nombre) << QByteArray(dicho) << fallo;
        };
        const auto otro = [](const char *texto) { return Otro{QString::fromUtf8(texto)}; };
        fila("pide", "Error: falta la contraseña\\n", PideContrasena{});
        fila("pide en inglés", "Error: uno\\nError: wrong password\\n", PideContrasena{});
        fila("con mayúscula", "Password required\\n", otro("No se puede leer este archivo."));
        fila("el primer Error", "aviso: error\\nError: cabecera dañada\\nError: otro\\n",
             otro("cabecera dañada"));
        fila("dentro de la línea", "IOError at 12", otro("IOError at 12"));
        fila("dos veces", "Error: a: Error: b\\r\\n", otro("a: b"));
        fila("nada", "", otro("No se puede leer este archivo."));
        fila("no es UTF-8", "Error: password \\xff\\n", otro("No se puede leer este archivo."));
    }
    void porQueNoSeLee() {
        QFETCH(QByteArray, dicho);
        QFETCH(FalloAlLeer, fallo);
        const Banco banco;
        banco.ponMotor({"salida -0644 1 a\\n", "error " + dicho, "sale 1"});
        QVERIFY(esFallo(Motor::listar(banco.url("a.okz"), QStringLiteral("x")), fallo));
        QVERIFY(banco.claves().isEmpty());
    }

    void tresVecesMalYUnaBien() {
        const Banco banco;
        banco.ponMotor({"exige sésamo", "salida -0644 1 a\\n"});
        for (const char *mala : {"", "sesamo", "sésamo "})
            QVERIFY(esFallo(Motor::listar(banco.url("a.okz"), QString::fromUtf8(mala)),
                            PideContrasena{}));
        QCOMPARE(entradas(Motor::listar(banco.url("a.okz"), QStringLiteral("sésamo"))), 1);
    }

    void sinMotor() {
        const Banco banco;
        QVERIFY(esFallo(Motor::listar(banco.url("a.okz"), QStringLiteral("x")),
                        Otro{QStringLiteral("No encuentro el motor.")}));
        QVERIFY(banco.claves().isEmpty());

        Banco::ponFicheroComoMotor("esto no es un programa", 0755);
        QVERIFY(esFallo(Motor::listar(banco.url("a.okz"), QStringLiteral("x")),
                        Otro{QStringLiteral("No pude arrancar el motor.")}));
        QCOMPARE(banco.claves().size(), 1); // stays when nothing was started
    }

    void unMotorQueSePortaMal() {
        const Banco banco;
        const auto lista = [&banco] { return Motor::listar(banco.url("a.okz"), std::nullopt); };
        banco.ponMotor({"salida -0644 1 a\\n", "senal 9"});
        QVERIFY(esFallo(lista(), Otro{kNada}));
        banco.ponMotor({"salida -0644 1 \\xff\\n"});
        QCOMPARE(entradas(lista()), 0);
        banco.ponMotor({"salida -0644 1 a\\n", "cierra", "espera 200", "sale 1"});
        QVERIFY(esFallo(lista(), Otro{kNada}));
        banco.ponMotor({"repite 1000000 basura\\n", "salida -0644 1 a\\n"});
        QCOMPARE(entradas(lista()), 1);
        // As much as a pipe holds may be said before the listing is complete.
        banco.ponMotor({"salida -0644 1 a\\n", "inunda 1000000", "salida -0644 1 b\\n"});
        QCOMPARE(entradas(lista()), 2);
        banco.ponMotor({"inunda 1000000", "error \\nError: harto\\n", "sale 1"});
        QVERIFY(esFallo(lista(), Otro{QStringLiteral("harto")}));
        banco.ponMotor({"deja-nieto 20000", "salida -0644 1 a\\n"});
        QElapsedTimer reloj;
        reloj.start();
        QCOMPARE(entradas(lista()), 1);
        QVERIFY(reloj.elapsed() < 10000);
    }

    void variosALaVez() {
        const Banco banco;
        banco.ponMotor({"exige x", "repite 1000 -0644 1 a\\n"});
        std::vector<std::future<Motor::Listado>> todos;
        for (int i = 0; i < 8; ++i)
            todos.push_back(std::async(std::launch::async, [&banco] {
                return Motor::listar(banco.url("a.okz"), QStringLiteral("x"));
            }));
        for (auto &listado : todos)
            QCOMPARE(entradas(listado.get()), 1000);
    }

    // The last one: after it every child is killed as it starts.
    void alSalirNoSeEsperaAUnListado() {
        const Banco banco;
        banco.ponMotor({"salida -0644 1 a\\n", "espera 60000"});
        auto listado = std::async(std::launch::async, [&banco] {
            return Motor::listar(banco.url("a.okz"), QStringLiteral("x"));
        });
        QCOMPARE(listado.wait_for(200ms), std::future_status::timeout);
        Proceso::terminaTodos(5s);
        QVERIFY(esFallo(listado.get(), Otro{kNada}));
        QVERIFY(banco.claves().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstListar)
#include "tst_listar.moc"
