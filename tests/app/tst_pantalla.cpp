// The compression screen's rules, without a window.
#include "banco.h"
#include "escritoriofalso.h"
#include "lugares/espacio.h"
#include "pantallas/palabras.h"
#include "pantallas/pantalla.h"
#include "sistema/hilos.h"

#include <QSignalSpy>
#include <QTest>

using Panel = Pantalla::Panel;

namespace {

// A screen, and the desktop around it.
struct Escena {
    EscritorioFalso escritorio;
    Pantalla pantalla{{}, escritorio};
};

const QUrl kDeLaRed(QStringLiteral("https://a/b"));

} // namespace

class TstPantalla : public QObject {
    Q_OBJECT

private slots:
    void loQueFaltaEnPalabras() {
        const std::pair<double, const char *> casos[]{
            {9.99, "unos segundos"}, {12.5, "15 s"},          {58, "60 s"},
            {60, "1 min"},           {89, "1 min"},           {90, "2 min"},
            {3590, "60 min"},        {3600, "más de 1 hora"}, {7200, "unas 2 horas"},
        };
        for (const auto &[segundos, texto] : casos)
            QCOMPARE(palabras::cuantoFalta(segundos), QString(texto));
    }

    void cuentaDeBytes() {
        const std::pair<qint64, const char *> casos[]{
            {0, "0 bytes"},      {1, "1 byte"},
            {1499, "1 kB"},      {999'499, "999 kB"},
            {999'500, "1,0 MB"}, {3'000'000'000, "3,00 GB"},
            {-2'500, "-3 kB"},   {std::numeric_limits<qint64>::max(), "9,22 EB"},
        };
        for (const auto &[bytes, texto] : casos)
            QCOMPARE(textoDeBytes(bytes, QLocale(QLocale::Spanish)), QString(texto));
    }

    void loSoltadoSeOrdenaYSustituye() {
        Escena escena;
        Pantalla &pantalla = escena.pantalla;
        QVERIFY(!pantalla.arrastreEntra({kDeLaRed}) && !pantalla.encima());
        QVERIFY(pantalla.arrastreEntra({url("/a")}) && pantalla.encima());
        pantalla.suelta({url("/z/b"), kDeLaRed, url("/a/c"), url("/Z")});
        QVERIFY(!pantalla.encima());
        const QList<QUrl> ordenado{url("/Z"), url("/a/c"), url("/z/b")};
        QCOMPARE(pantalla.origenes(), ordenado);
        pantalla.suelta({kDeLaRed});
        QCOMPARE(pantalla.origenes(), ordenado);
        pantalla.suelta({url("/z.okz"), url("/z.okz")}); // one alone would be opened
        QCOMPARE(pantalla.origenes().size(), 2);
    }

    void laZonaDiceQueHayYCuantoOcupa() {
        const Banco banco;
        Escena escena;
        Pantalla &pantalla = escena.pantalla;
        const QUrl fichero = banco.fichero("caña.txt", "12345");
        banco.fichero("carpeta/vacío", "");
        banco.enlace("carpeta", "enlace");

        pantalla.suelta({url("/usr")}); // long to measure, and nobody waits for it any more
        pantalla.suelta({fichero});
        QCOMPARE(pantalla.cabecera(), QStringLiteral("caña.txt"));
        colaDeFondo().waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(pantalla.peso(), QStringLiteral("5 b"));

        pantalla.suelta({fichero, banco.url("carpeta"), banco.url("enlace"), banco.url("no-está")});
        QTRY_COMPARE(pantalla.cabecera(), QStringLiteral("4 archivos · 12 b"));
        QStringList filas;
        for (int i = 0; i < pantalla.elegidos()->rowCount(); ++i) {
            const auto dato = [&](int papel) {
                return pantalla.elegidos()->index(i).data(papel).toString();
            };
            filas.append(dato(Origenes::Nombre) + ' ' + dato(Origenes::Icono) + ' ' +
                         dato(Origenes::Clase));
        }
        QCOMPARE(filas, (QStringList{"carpeta folder carpeta", "caña.txt doc archivo",
                                     "enlace doc archivo", "no-está doc archivo"}));

        // One after the other, without an empty area between them.
        pantalla.suelta({banco.url("carpeta")});
        QCOMPARE(pantalla.icono() + pantalla.clase(), QStringLiteral("folder.fillcarpeta"));
        QSignalSpy cambios(&pantalla, &Pantalla::origenesCambian);
        pantalla.suelta({fichero});
        QCOMPARE(pantalla.icono() + pantalla.clase(), QStringLiteral("doc.fillarchivo"));
        QCOMPARE(cambios.count(), 1);
    }

    void laPantallaPuedeIrseConElPanelAbierto() {
        EscritorioFalso escritorio;
        escritorio.origenes = {url("/a")};
        escritorio.destino = url("/b.okz");
        std::unique_ptr<Pantalla> pantalla;
        escritorio.entretanto = [&] { pantalla.reset(); };
        for (const auto accion : {&Pantalla::elegir, &Pantalla::guardar}) {
            pantalla = std::make_unique<Pantalla>(QList<QUrl>{url("/a")}, escritorio);
            pantalla->aparece();
            (pantalla.get()->*accion)();
            QVERIFY(!pantalla);
        }
    }

    // What is wanting, what reaches the engine of the options, and the way back
    // from a failure.
    void guardarYVolver() {
        const Banco banco({"argumentos args", "error Error: lleno\\n", "sale 1"});
        Escena escena;
        Pantalla &pantalla = escena.pantalla;
        escena.escritorio.destino = banco.url("c.okz");
        QVERIFY(!pantalla.puedeGuardar());
        pantalla.guardar();
        QVERIFY(escena.escritorio.nombrePropuesto.isEmpty());
        pantalla.suelta({banco.fichero("a", "1")});
        pantalla.ponContrasena("x");
        pantalla.ponMaximo(true);
        pantalla.guardar();
        QCOMPARE(pantalla.panel(), Panel::Trabajando);
        QTRY_COMPARE(pantalla.panel(), Panel::Error);
        QCOMPARE(pantalla.mensaje(), QStringLiteral("lleno"));
        QVERIFY(banco.argumentos().contains("--max"));
        QVERIFY(!banco.argumentos().contains("--encrypt"));
        pantalla.volver();
        QCOMPARE(pantalla.panel(), Panel::Reposo);

        QSignalSpy cambios(&pantalla, &Pantalla::opcionesCambian);
        pantalla.ponContrasena("x\r\n"); // pasted: the field is told what is left of it
        QCOMPARE(pantalla.contrasena(), QStringLiteral("x"));
        QCOMPARE(cambios.count(), 1);
        pantalla.ponContrasena("");
        const QSignalSpy avisos(&pantalla, &Pantalla::puedeGuardarCambia);
        pantalla.ponCifrar(true);
        QVERIFY(!pantalla.puedeGuardar() && avisos.size() == 1);
        pantalla.ponContrasena("x");
        pantalla.guardar();
        QTRY_COMPARE(pantalla.panel(), Panel::Error);
        QVERIFY(banco.argumentos().contains("--encrypt"));
    }

    void elResultadoEnPalabras() {
        const std::pair<Motor::Hecho, const char *> casos[]{
            {{1000, 333, 59.9, {}}, "1000 b  →  333 b|ahorras 667 b · 66% menos|en 59 s"},
            {{1000, 1500, 119, {}}, "1000 b  →  1500 b|ahorras -500 b · -50% menos|en 1 min"},
            {{0, 45, 60, {}}, "0 b  →  45 b||en 1 min"},
        };
        for (const auto &[hecho, texto] : casos) {
            Escena escena;
            Pantalla &pantalla = escena.pantalla;
            pantalla.motor().ponEstado(hecho);
            QCOMPARE(pantalla.tamanos() + '|' + pantalla.ahorro() + '|' + pantalla.duracion(),
                     QString(texto));
        }
    }
};

QTEST_GUILESS_MAIN(TstPantalla)
#include "tst_pantalla.moc"
