// Extraction for viewing: the private folder, the copy, the space check.
#include "banco.h"
#include "lugares/espacio.h"
#include "lugares/ruta.h"

#include <QProcess>
#include <QTest>
#include <QThread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kMargen = 104857600;

mode_t modo(const QByteArray &ruta) {
    struct stat dato {};
    return ::lstat(ruta.constData(), &dato) == 0 ? dato.st_mode & 07777 : 0;
}

// One opening; its result when it has come.
struct Vista {
    explicit Vista(const Banco &en)
        : banco(en) {}

    const Banco &banco;
    std::optional<Motor::Copia> copia;
    QThread *hilo = nullptr;

    void pide(const char *ruta, const QString &clave = "x", qint64 bytes = 1,
              const EspacioLibre &libre = espacioLibre) {
        copia.reset();
        Motor::sacarParaVer(
            banco.url("a.okz"), QString::fromUtf8(ruta), bytes, clave,
            [this](const Motor::Copia &dada) {
                copia = dada;
                hilo = QThread::currentThread();
            },
            libre);
    }
    // Where the copy lies below the folder of all copies and its own, or the
    // failure in brackets; waits for it.
    QString dada() {
        if (!QTest::qWaitFor([this] { return copia.has_value(); }, 20000))
            return QStringLiteral("nada");
        if (const auto *fallo = std::get_if<FalloAlLeer>(&*copia))
            return u'[' + std::get<fallos::Otro>(*fallo).texto + u']';
        return QString::fromUtf8(lugar().mid(banco.ruta("orcalin-ver/").size() + 37));
    }
    [[nodiscard]] QByteArray lugar() const { return ruta::nativa(std::get<QUrl>(*copia)); }
};

// What an opening of `ruta` gives with an engine that plays `guion`.
QString abre(const Banco &banco, const Guion &guion, const char *ruta) {
    banco.ponMotor(guion);
    Vista vista(banco);
    vista.pide(ruta);
    return vista.dada();
}

} // namespace

class TstVer : public QObject {
    Q_OBJECT

private slots:
    void unaCopia() {
        const Banco banco(
            {"exige sésamo", "crea-entrada hola", "error Error: solo un aviso\\n", "sale 3"});
        QByteArray lugar;
        for (int vez = 0; vez < 2; ++vez) {
            Vista vista(banco);
            vista.pide("docs/ñ/b.txt", "sésamo");
            QVERIFY(!vista.copia); // not before the call returns
            QCOMPARE(vista.dada(), QStringLiteral("docs/ñ/b.txt"));
            QCOMPARE(vista.hilo, qApp->thread());
            QVERIFY(vista.lugar() != lugar);
            lugar = vista.lugar();
        }
        QCOMPARE(modo(lugar), 0444u);
        QCOMPARE(modo(banco.ruta("orcalin-ver")), 0700u);
        QVERIFY(banco.claves().isEmpty());
        Motor::limpiaTemporales();
        QVERIFY(!banco.hay("orcalin-ver"));
        // What counts is that the copy is there.
        QCOMPARE(abre(banco, {"sale 0"}, "b.txt"), QStringLiteral("[No se pudo abrir «b.txt».]"));
    }

    void elHueco() {
        const auto noCabe = QStringLiteral("[Para abrirlo hay que sacarlo del archivo y no cabe: "
                                           "ocupa %1 y quedan %2.]");
        struct {
            qint64 bytes;
            std::optional<qint64> libres;
            bool cabe;
        } const casos[]{
            {5, 5 + kMargen, true},
            {5, 4 + kMargen, false},
            {std::numeric_limits<qint64>::max(), std::nullopt, true},
        };
        const Banco banco({"crea-entrada hola"});
        for (const auto &[bytes, libres, cabe] : casos) {
            QByteArray preguntada;
            Vista vista(banco);
            vista.pide("a", "x", bytes, [&, libres = libres](const QByteArray &carpeta) {
                preguntada = carpeta;
                return libres;
            });
            QCOMPARE(preguntada + '/', banco.ruta(""));
            QCOMPARE(vista.copia.has_value(), !cabe); // a refusal comes during the call
            QCOMPARE(vista.dada(),
                     cabe ? "a" : noCabe.arg(textoDeBytes(bytes), textoDeBytes(*libres)));
        }
        QVERIFY(espacioLibre("/tmp").value_or(0) > 0);
        QVERIFY(!espacioLibre("/no/existe"));
    }

    // The temporary folder may be shared: nobody else may see the copies.
    void unaCarpetaQueNoEsDeUno() {
        for (const char *orden :
             {"ln -s . ", "touch ", "mkdir -m 750 ", "install -d -m 700 -o 1 "}) {
            const Banco banco;
            const auto hace = QString::fromLatin1(orden + banco.ruta("orcalin-ver"));
            if (QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), hace}) != 0)
                QSKIP("solo root puede dar una carpeta a otro");
            // What lies there from the root on is not the copy.
            banco.fichero("fuera", "");
            const QByteArray ruta = banco.ruta("fuera").mid(1);
            QCOMPARE(abre(banco, {"cuenta veces", "crea-entrada hola"}, ruta),
                     QStringLiteral("[No se pudo preparar la carpeta de las copias.]"));
            QVERIFY2(!banco.hay("veces"), orden); // not even run
            QVERIFY(banco.claves().isEmpty());
        }
    }

    void nombresQueElListadoEscapa() {
        // The script has escapes of its own: \\ is one backslash.
        const std::array<const char *, 3> casos[]{
            {"a\\nb", "a\\x0ab", "a\nb"},
            {"d\\\\e/\\xff\\\\", "d\\\\e/\\xff\\\\", "d\\e/\uFFFD\\"},
            // An engine that prints names as they are.
            {"a\\\\x0ab", "a\\x0ab", "a\\x0ab"},
            {"\\\\q\\\\x4", "\\q\\x4", "\\q\\x4"},
        };
        const Banco banco;
        for (const auto &[crea, ruta, lugar] : casos)
            QCOMPARE(abre(banco, {QByteArray("crea ") + crea}, ruta), QString(lugar));
        for (const char *ruta : {"\\x+f", "\\x4g"}) // no escapes, and not there
            QVERIFY(abre(banco, {"crea \x0fg"}, ruta).startsWith("[No se pudo abrir «"));
    }

    void nadaDeFuera() {
        const Banco banco;
        banco.fichero("fuera", "secreto");
        const QByteArray fuera = banco.ruta("fuera");
        ::chmod(fuera.constData(), 0640);
        for (const char *ruta : {"../../fuera", "x/../../../fuera", fuera.constData(), "..",
                                 "\\x2e./\\x2e./fuera", ".", "/", "x\\x00y"})
            QVERIFY2(abre(banco, {"crea x/y"}, ruta).startsWith('['), ruta);

        // A link may lead there, and what it leads to stays as it is.
        QCOMPARE(abre(banco, {"enlaza-entrada " + fuera}, "l"), QStringLiteral("l"));
        QCOMPARE(modo(fuera), 0640u);
        QCOMPARE(abre(banco, {"enlaza-entrada /no/existe"}, "l"),
                 QStringLiteral("[No se pudo abrir «l».]"));
    }
};

QTEST_GUILESS_MAIN(TstVer)
#include "tst_ver.moc"
