// Extraction for viewing: the private folder, the copy, the space check.
#include "banco.h"
#include "motor/copia.h"
#include "motor/fondo.h"
#include "motor/proceso.h"
#include "motor/ruta.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>
#include <QThread>

#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;
using fallos::Otro;

namespace {

constexpr qint64 kMargen = 104857600;

// One opening; its result when it has come.
struct Vista {
    std::optional<Motor::Copia> copia;
    QThread *hilo = nullptr;
    int veces = 0;

    void pide(const Banco &banco, const QString &ruta, const std::optional<QString> &clave = {}) {
        Motor::sacarParaVer(banco.url("a.okz"), ruta, 1, clave, [this](const Motor::Copia &dada) {
            copia = dada;
            hilo = QThread::currentThread();
            ++veces;
        });
    }
    bool espera() {
        return QTest::qWaitFor([this] { return copia.has_value(); }, 20000);
    }
    [[nodiscard]] QByteArray lugar() const {
        const auto *url = copia ? std::get_if<QUrl>(&*copia) : nullptr;
        return url != nullptr ? ruta::nativa(*url) : QByteArray();
    }
    [[nodiscard]] bool esFallo(const QString &texto) const {
        return copia && *copia == Motor::Copia(FalloAlLeer(Otro{texto}));
    }
};

mode_t modo(const QByteArray &ruta) {
    struct stat dato {};
    return ::lstat(ruta.constData(), &dato) == 0 ? dato.st_mode & 07777 : 0;
}

// What an opening of `ruta` gives with an engine that plays `guion`.
Vista abre(const Banco &banco, const QList<QByteArray> &guion, const QString &ruta) {
    banco.ponMotor(guion);
    Vista vista;
    vista.pide(banco, ruta, QStringLiteral("x"));
    (void)vista.espera();
    return vista;
}

} // namespace

class TstVer : public QObject {
    Q_OBJECT

private slots:
    void unaCopia() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "exige sésamo", "crea-entrada hola",
                        "error Error: solo un aviso\\n", "sale 3"});
        Vista vista;
        vista.pide(banco, QStringLiteral("docs/ñ/b.txt"), QStringLiteral("sésamo"));
        QVERIFY(!vista.copia); // not before the call returns
        QVERIFY(vista.espera());
        QCOMPARE(vista.veces, 1);
        QCOMPARE(vista.hilo, qApp->thread());

        const QList<QByteArray> args = Banco::argumentos(banco.ruta("args"));
        const QByteArray carpeta = args.value(3);
        QCOMPARE(carpeta.size(), banco.ruta("orcalin-ver/").size() + 36);
        const QList<QByteArray> esperados{
            "extract",      banco.ruta("a.okz"), "-o",         carpeta, "--file",
            "docs/ñ/b.txt", "--password-file",   args.value(7)};
        QCOMPARE(args, esperados);
        QCOMPARE(vista.lugar(), carpeta + "/docs/ñ/b.txt");
        QCOMPARE(Banco::lee(vista.lugar()), "hola");
        QCOMPARE(modo(vista.lugar()), 0444u);
        QCOMPARE(modo(banco.ruta("orcalin-ver")), 0700u);
        QVERIFY(banco.claves().isEmpty());

        Vista otra;
        otra.pide(banco, QStringLiteral("docs/ñ/b.txt"), QStringLiteral("sésamo"));
        QVERIFY(otra.espera());
        QVERIFY(!otra.lugar().isEmpty() && otra.lugar() != vista.lugar());
        Motor::limpiaTemporales();
        QVERIFY(!QFileInfo::exists(banco.url("orcalin-ver").toLocalFile()));
    }

    void soloCuentaQueLaCopiaEste_data() {
        QTest::addColumn<QByteArray>("dicho");
        QTest::addColumn<QString>("texto");
        const auto generico = QStringLiteral("No se pudo abrir «docs/b.txt».");
        QTest::newRow("éxito sin copia") << QByteArray("sale 0") << generico;
        QTest::newRow("sin Error") << QByteArray("error error\\n") << generico;
        QTest::newRow("el primero")
            << QByteArray("error aviso\\nError: roto\\nError: x\\n") << QStringLiteral("roto");
        QTest::newRow("contraseña")
            << QByteArray("error Error: contraseña mala\\n") << QStringLiteral("contraseña mala");
        QTest::newRow("muerto") << QByteArray("senal 9") << generico;
        QTest::newRow("mudo y vivo") << QByteArray("cierra") << generico;
    }
    void soloCuentaQueLaCopiaEste() {
        QFETCH(QByteArray, dicho);
        QFETCH(QString, texto);
        const Banco banco;
        QVERIFY(abre(banco, {dicho, "espera 50"}, QStringLiteral("docs/b.txt")).esFallo(texto));
        QVERIFY(banco.claves().isEmpty());
    }

    void sinMotor() {
        const Banco banco;
        Vista vista;
        vista.pide(banco, QStringLiteral("a"), QStringLiteral("x"));
        QVERIFY(vista.esFallo(QStringLiteral("No encuentro el motor."))); // during the call
        QVERIFY(!QFileInfo::exists(banco.url("orcalin-ver").toLocalFile()));

        Banco::ponFicheroComoMotor("esto no es un programa", 0755);
        Vista otra;
        otra.pide(banco, QStringLiteral("a"), QStringLiteral("x"));
        QVERIFY(!otra.copia);
        QVERIFY(otra.espera());
        QVERIFY(otra.esFallo(QStringLiteral("No pude arrancar el motor.")));
        QCOMPARE(banco.claves().size(), 1);
    }

    void elHueco_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<std::optional<qint64>>("libres");
        QTest::addColumn<QString>("texto"); // empty: it goes on
        const auto noCabe = [](const char *ocupa, const char *quedan) {
            return QStringLiteral("Para abrirlo hay que sacarlo del archivo y no cabe: ocupa %1 y "
                                  "quedan %2.")
                .arg(QString::fromUtf8(ocupa), QString::fromUtf8(quedan));
        };
        using Libres = std::optional<qint64>;
        QTest::newRow("justo") << qint64(5) << Libres(5 + kMargen) << QString();
        QTest::newRow("uno menos")
            << qint64(5) << Libres(4 + kMargen) << noCabe("5 bytes", "104,9 MB");
        QTest::newRow("vacía") << qint64(0) << Libres(kMargen - 1) << noCabe("0 bytes", "104,9 MB");
        QTest::newRow("grande") << qint64(3000000000) << Libres(1000000000)
                                << noCabe("3,00 GB", "1,00 GB");
        QTest::newRow("no se sabe") << std::numeric_limits<qint64>::max() << Libres() << QString();
    }
    void elHueco() {
        QFETCH(qint64, bytes);
        QFETCH(std::optional<qint64>, libres);
        QFETCH(QString, texto);
        const QLocale antes;
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
        const Banco banco;
        banco.ponMotor({"crea-entrada hola"});
        QByteArray preguntada;
        std::optional<Motor::Copia> copia;
        Motor::sacarParaVer(
            banco.url("a.okz"), QStringLiteral("a"), bytes, std::nullopt,
            [&](const Motor::Copia &dada) { copia = dada; },
            [&](const QByteArray &carpeta) {
                preguntada = carpeta;
                return libres;
            });
        QLocale::setDefault(antes);
        QCOMPARE(preguntada + '/', banco.ruta(""));
        QCOMPARE(copia.has_value(), !texto.isEmpty()); // a refusal comes during the call
        QTRY_VERIFY(copia.has_value());
        if (texto.isEmpty())
            QVERIFY(std::holds_alternative<QUrl>(*copia));
        else
            QVERIFY(*copia == Motor::Copia(FalloAlLeer(Otro{texto})));
    }

    void elHuecoDeVerdad() {
        QVERIFY(espacioLibre("/tmp").value_or(0) > 0);
        QVERIFY(!espacioLibre("/no/existe"));
    }

    // The temporary folder may be shared: nobody else may see the copies.
    void unaCarpetaQueNoEsDeUno_data() {
        QTest::addColumn<QString>("que");
        for (const char *que : {"enlace", "abierta", "fichero", "ajena"})
            QTest::newRow(que) << QString::fromLatin1(que);
    }
    void unaCarpetaQueNoEsDeUno() {
        QFETCH(QString, que);
        const Banco banco;
        const QByteArray visor = banco.ruta("orcalin-ver");
        QVERIFY(::mkdir(banco.ruta("otra").constData(), 0700) == 0);
        if (que == QStringLiteral("enlace"))
            banco.enlace("otra", "orcalin-ver");
        else if (que == QStringLiteral("fichero"))
            banco.fichero("orcalin-ver", "");
        else
            QVERIFY(::mkdir(visor.constData(), que == QStringLiteral("abierta") ? 0750 : 0700) ==
                    0);
        if (que == QStringLiteral("ajena") && ::chown(visor.constData(), 1, 1) != 0)
            QSKIP("solo root puede dar una carpeta a otro");
        const auto vista = abre(banco, {"cuenta " + banco.ruta("veces"), "crea-entrada hola"},
                                QStringLiteral("a"));
        QVERIFY(vista.esFallo(QStringLiteral("No se pudo abrir «a».")));
        QVERIFY(!QFileInfo::exists(banco.url("veces").toLocalFile())); // not even run
        QVERIFY(banco.claves().isEmpty());
    }

    void nombresQueElListadoEscapa() {
        const Banco banco;
        const auto lugar = [&banco](const QByteArray &crea, const char *ruta) {
            const QByteArray todo = abre(banco, {"crea " + crea}, QString::fromUtf8(ruta)).lugar();
            return todo.mid(banco.ruta("orcalin-ver/").size() + 37);
        };
        // The script has escapes of its own: \\ is one backslash.
        QCOMPARE(lugar("a\\nb", "a\\x0ab"), "a\nb");
        QCOMPARE(lugar("d\\\\e/\\xff\\\\", "d\\\\e/\\xff\\\\"), "d\\e/\xff\\");
        QCOMPARE(lugar(" x", "\\x20x"), " x");
        QCOMPARE(lugar("-c", "-c"), "-c");
        // An engine that prints names as they are.
        QCOMPARE(lugar("a\\\\x0ab", "a\\x0ab"), "a\\x0ab");
        QCOMPARE(lugar("\\\\q\\\\x4", "\\q\\x4"), "\\q\\x4");
        // No escapes at all, and not there.
        for (const char *ruta : {"\\q", "\\x4", "\\x+f", "\\", "\\x4g"})
            QCOMPARE(lugar("\x0fg", ruta), QByteArray());
    }

    void nadaDeFuera() {
        const Banco banco;
        banco.fichero("fuera", "secreto");
        ::chmod(banco.ruta("fuera").constData(), 0640);
        const QByteArray absoluta = banco.ruta("fuera");
        for (const QByteArray &ruta :
             {QByteArray("../../fuera"), QByteArray("x/../../../fuera"), absoluta, QByteArray(".."),
              QByteArray("\\x2e\\x2e/../fuera"), QByteArray("\\x2e./\\x2e./fuera"), QByteArray("."),
              QByteArray("/"), QByteArray("./"), QByteArray("\\x00"), QByteArray("x\\x00y"),
              QByteArray("x\0y", 3)}) {
            const auto vista = abre(banco, {"crea x/y"}, QString::fromUtf8(ruta));
            QVERIFY2(vista.copia && std::holds_alternative<FalloAlLeer>(*vista.copia),
                     ruta.constData());
        }
        QCOMPARE(modo(absoluta), 0640u);
    }

    void unEnlaceSeQuedaComoEsta() {
        const Banco banco;
        banco.fichero("fuera", "x");
        ::chmod(banco.ruta("fuera").constData(), 0640);
        const auto vista =
            abre(banco, {"enlaza-entrada " + banco.ruta("fuera")}, QStringLiteral("l"));
        QVERIFY(!vista.lugar().isEmpty());
        QCOMPARE(modo(banco.ruta("fuera")), 0640u);
        QVERIFY(abre(banco, {"enlaza-entrada /no/existe"}, QStringLiteral("l"))
                    .esFallo(QStringLiteral("No se pudo abrir «l».")));
    }

    void variasALaVez() {
        const Banco banco;
        banco.ponMotor({"exige x", "espera 100", "crea-entrada hola"});
        std::array<Vista, 20> vistas;
        for (Vista &vista : vistas)
            vista.pide(banco, QStringLiteral("a"), QStringLiteral("x"));
        for (Vista &vista : vistas)
            QVERIFY(vista.espera() && !vista.lugar().isEmpty());
    }

    // The last one: after it every child is killed as it starts.
    void alSalirNoSeEspera() {
        const Banco banco;
        banco.ponMotor({"espera 60000"});
        Vista vista;
        vista.pide(banco, QStringLiteral("a"), QStringLiteral("x"));
        QTRY_COMPARE(banco.claves().size(), 1);
        QElapsedTimer reloj;
        reloj.start();
        Proceso::terminaTodos(5s);
        colaDeFondo().waitForDone();
        QVERIFY(reloj.elapsed() < 10000);
        QVERIFY(banco.claves().isEmpty());
        QVERIFY(vista.espera());
    }
};

QTEST_GUILESS_MAIN(TstVer)
#include "tst_ver.moc"
