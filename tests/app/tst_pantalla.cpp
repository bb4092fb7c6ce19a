// The compression screen's rules, without a window.
#include "banco.h"
#include "escritoriofalso.h"
#include "motor/bytes.h"
#include "pantallas/cuantofalta.h"
#include "pantallas/pantalla.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using Panel = Pantalla::Panel;
using Contenido = Pantalla::Contenido;

namespace {

QUrl url(const char *ruta) {
    return QUrl::fromLocalFile(QString::fromUtf8(ruta));
}

// The driver of a screen in a state of the test's choosing.
void pon(Pantalla &pantalla, Motor::Estado estado) {
    pantalla.motor().ponEstado(std::move(estado));
}

Motor::Estado hecho(qint64 entrada, qint64 salida, double segundos) {
    return Motor::Hecho{entrada, salida, segundos, url("/x.okz")};
}

} // namespace

class TstPantalla : public QObject {
    Q_OBJECT

private slots:
    void loQueFaltaEnPalabras_data() {
        QTest::addColumn<double>("segundos");
        QTest::addColumn<QString>("texto");
        const auto fila = [](double s, const char *texto) {
            QTest::newRow(texto) << s << QString::fromUtf8(texto);
        };
        fila(9.99, "unos segundos");
        fila(10, "10 s");
        fila(12.5, "15 s");
        fila(58, "60 s");
        fila(60, "1 min");
        fila(89, "1 min");
        fila(90, "2 min");
        fila(3590, "60 min");
        fila(3600, "más de 1 hora");
        fila(7199.9, "más de 1 hora");
        fila(7200, "unas 2 horas");
        fila(9000, "unas 3 horas");
    }
    void loQueFaltaEnPalabras() {
        QFETCH(double, segundos);
        QFETCH(QString, texto);
        QCOMPARE(cuantoFalta(segundos), texto);
    }

    void cuentaDeBytes_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("texto");
        QTest::newRow("0") << 0LL << "0 bytes";
        QTest::newRow("1") << 1LL << "1 byte";
        QTest::newRow("999") << 999LL << "999 bytes";
        QTest::newRow("kB") << 1499LL << "1 kB";
        QTest::newRow("casi MB") << 999'499LL << "999 kB";
        QTest::newRow("salto") << 999'500LL << "1,0 MB";
        QTest::newRow("MB") << 16'449'999LL << "16,4 MB";
        QTest::newRow("GB") << 3'000'000'000LL << "3,00 GB";
        QTest::newRow("negativo") << -2'500LL << "-3 kB";
        QTest::newRow("máximo") << std::numeric_limits<qint64>::max() << "9,22 EB";
    }
    void cuentaDeBytes() {
        QFETCH(qint64, bytes);
        QFETCH(QString, texto);
        QCOMPARE(textoDeBytes(bytes, QLocale(QLocale::Spanish)), texto);
    }

    void loInicialSeTomaUnaVez() {
        EscritorioFalso escritorio;
        Pantalla pantalla({url("/b"), url("/a")}, escritorio);
        QCOMPARE(pantalla.contenido(), Contenido::Nada);
        pantalla.aparece();
        const QList<QUrl> comoVino{url("/b"), url("/a")};
        QCOMPARE(pantalla.origenes(), comoVino);
        pantalla.otraCosa();
        pantalla.aparece();
        QVERIFY(pantalla.origenes().isEmpty());
    }

    void loSoltadoSeOrdenaYSustituye() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        pantalla.suelta({url("/z/b"), QUrl(QStringLiteral("https://a/b")), url("/a/c"), url("/Z")});
        const QList<QUrl> ordenado{url("/Z"), url("/a/c"), url("/z/b")};
        QCOMPARE(pantalla.origenes(), ordenado);
        pantalla.suelta({QUrl(QStringLiteral("https://a/b"))});
        QCOMPARE(pantalla.origenes(), ordenado);
        pantalla.suelta({url("/z"), url("/z")});
        QCOMPARE(pantalla.origenes().size(), 2);
    }

    void unArchivoSoloSeAbre() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        QSignalSpy abiertos(&pantalla, &Pantalla::abreArchivo);
        pantalla.suelta({url("/b.OKZ")});
        QCOMPARE(abiertos.size(), 1);
        QCOMPARE(abiertos.first().first().toUrl(), url("/b.OKZ"));
        QVERIFY(pantalla.origenes().isEmpty());
        pantalla.suelta({url("/b.OKZ"), url("/a")});
        QCOMPARE(abiertos.size(), 1);
        QCOMPARE(pantalla.origenes().size(), 2);
    }

    void soloFicherosPasanPorEncima() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        QVERIFY(!pantalla.arrastreEntra({QUrl(QStringLiteral("https://a/b"))}));
        QVERIFY(!pantalla.encima());
        QVERIFY(pantalla.arrastreEntra({url("/a")}));
        QVERIFY(pantalla.encima());
        pantalla.arrastreSale();
        QVERIFY(!pantalla.encima());
    }

    void elegirSustituyeComoVieneYCancelarNada() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        escritorio.origenes = {url("/z"), url("/a.okz")};
        pantalla.elegir();
        QCOMPARE(pantalla.origenes(), escritorio.origenes);
        escritorio.origenes.clear();
        pantalla.elegir();
        QCOMPARE(pantalla.origenes().size(), 2);
    }

    void laZonaDiceQueHayYCuantoOcupa() {
        const Banco banco;
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        QDir().mkdir(banco.url("carpeta").toLocalFile());
        const QUrl fichero = banco.fichero("ca\xc3\xb1"
                                           "a.txt",
                                           "12345");
        banco.enlace("carpeta", "enlace");

        pantalla.suelta({fichero});
        QCOMPARE(pantalla.contenido(), Contenido::Uno);
        QCOMPARE(pantalla.cabecera(), QStringLiteral("caña.txt"));
        QTRY_COMPARE(pantalla.peso(), QStringLiteral("5 b"));
        QCOMPARE(pantalla.icono(0, true), QStringLiteral("doc.fill"));

        pantalla.suelta({fichero, banco.url("carpeta"), banco.url("enlace"), banco.url("no-está")});
        QCOMPARE(pantalla.contenido(), Contenido::Varios);
        QTRY_COMPARE(pantalla.cabecera(), QStringLiteral("4 archivos · 12 b"));
        const QStringList nombres{"carpeta", "caña.txt", "enlace", "no-está"};
        QCOMPARE(pantalla.nombres(), nombres);
        QCOMPARE(pantalla.icono(0, false), QStringLiteral("folder"));
        QCOMPARE(pantalla.icono(2, false), QStringLiteral("doc"));
        QCOMPARE(pantalla.icono(3, false), QStringLiteral("doc"));
    }

    void guardarPideLoQueFalta() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        QVERIFY(!pantalla.puedeGuardar());
        pantalla.guardar();
        QVERIFY(escritorio.nombrePropuesto.isEmpty());
        pantalla.suelta({url("/fotos/a.txt")});
        QVERIFY(pantalla.puedeGuardar());
        QSignalSpy avisos(&pantalla, &Pantalla::puedeGuardarCambia);
        pantalla.ponCifrar(true);
        QVERIFY(!pantalla.puedeGuardar() && avisos.size() == 1);
        pantalla.ponContrasena(QStringLiteral("x"));
        QVERIFY(pantalla.puedeGuardar());
        pantalla.ponCifrar(false);
        QCOMPARE(pantalla.contrasena(), QStringLiteral("x")); // hidden, but kept
    }

    void elNombrePropuesto() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        pantalla.suelta({QUrl(QStringLiteral("file:///u/fotos/"))});
        pantalla.guardar();
        QCOMPARE(escritorio.nombrePropuesto, QStringLiteral("fotos.okz"));
        pantalla.suelta({url("/u/a.txt")});
        pantalla.guardar();
        QCOMPARE(escritorio.nombrePropuesto, QStringLiteral("a.txt.okz"));
        pantalla.suelta({url("/u/a.txt"), url("/u/b")});
        pantalla.guardar();
        QCOMPARE(escritorio.nombrePropuesto, QStringLiteral("Archivo.okz"));
        QCOMPARE(pantalla.panel(), Panel::Reposo); // cancelled, every time
    }

    void laPantallaPuedeIrseConElPanelAbierto() {
        EscritorioFalso escritorio;
        escritorio.origenes = {url("/a")};
        escritorio.destino = url("/b.okz");
        auto pantalla = std::make_unique<Pantalla>(QList<QUrl>(), escritorio);
        escritorio.entretanto = [&] { pantalla.reset(); };
        pantalla->elegir();
        QVERIFY(!pantalla);
        pantalla = std::make_unique<Pantalla>(QList<QUrl>{url("/a")}, escritorio);
        pantalla->aparece();
        pantalla->guardar();
        QVERIFY(!pantalla);
    }

    // What reaches the engine of the options, and the way back from a failure.
    void guardarYVolver() {
        const Banco banco;
        banco.ponMotor({"argumentos " + banco.ruta("args"), "error Error: lleno\\n", "sale 1"});
        EscritorioFalso escritorio;
        escritorio.destino = banco.url("c.okz");
        Pantalla pantalla({}, escritorio);
        pantalla.suelta({banco.fichero("a", "1")});
        pantalla.ponContrasena(QStringLiteral("x"));
        pantalla.ponMaximo(true);
        pantalla.guardar();
        QCOMPARE(pantalla.panel(), Panel::Trabajando);
        QTRY_COMPARE(pantalla.panel(), Panel::Error);
        QCOMPARE(pantalla.mensaje(), QStringLiteral("lleno"));
        QVERIFY(Banco::lee(banco.ruta("args")).contains("--max"));
        QVERIFY(!Banco::lee(banco.ruta("args")).contains("--encrypt"));
        pantalla.volver();
        QCOMPARE(pantalla.panel(), Panel::Reposo);
        QVERIFY(pantalla.maximo() && pantalla.origenes().size() == 1);

        pantalla.ponCifrar(true);
        pantalla.guardar();
        QTRY_COMPARE(pantalla.panel(), Panel::Error);
        QVERIFY(Banco::lee(banco.ruta("args")).contains("--encrypt"));
    }

    void elPanelDeTrabajo() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        pantalla.suelta({url("/fotos")});
        pon(pantalla, Motor::Trabajando{0.25, QStringLiteral("3 de 10 archivos"), 12.5});
        QCOMPARE(pantalla.titular(), QStringLiteral("fotos"));
        QCOMPARE(pantalla.pct(), 0.25);
        QCOMPARE(pantalla.detalle(), QStringLiteral("3 de 10 archivos · ~15 s"));
        pon(pantalla, Motor::Trabajando{0, QStringLiteral("preparando…"), std::nullopt});
        QCOMPARE(pantalla.detalle(), QStringLiteral("preparando…"));
        pantalla.suelta({url("/a"), url("/b")});
        QCOMPARE(pantalla.titular(), QStringLiteral("2 archivos"));
    }

    void elPanelDelResultado() {
        EscritorioFalso escritorio;
        Pantalla pantalla({}, escritorio);
        pantalla.suelta({url("/a")});
        pon(pantalla, hecho(1000, 333, 59.9));
        QCOMPARE(pantalla.panel(), Panel::Hecho);
        QCOMPARE(pantalla.tamanos(), QStringLiteral("1000 b  →  333 b"));
        QCOMPARE(pantalla.ahorro(), QStringLiteral("ahorras 667 b · 66% menos"));
        QCOMPARE(pantalla.duracion(), QStringLiteral("en 59 s"));
        pon(pantalla, hecho(1000, 1500, 119));
        QCOMPARE(pantalla.ahorro(), QStringLiteral("ahorras -500 b · -50% menos"));
        QCOMPARE(pantalla.duracion(), QStringLiteral("en 1 min"));
        pon(pantalla, hecho(0, 45, 60));
        QCOMPARE(pantalla.ahorro(), QString());
        pantalla.revela();
        QCOMPARE(escritorio.revelados, QList<QUrl>{url("/x.okz")});
        pantalla.otraCosa();
        QVERIFY(pantalla.panel() == Panel::Reposo && pantalla.origenes().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstPantalla)
#include "tst_pantalla.moc"
