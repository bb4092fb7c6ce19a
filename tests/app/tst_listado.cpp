// The listing as text: lines, fields, entries.
#include "motor/listado.h"

#include <QSet>
#include <QTest>

#include <limits>

static_assert(sizeof(Entrada) <= 56, "there may be a million of them");

class TstListado : public QObject {
    Q_OBJECT

private slots:
    void unaLinea_data() {
        QTest::addColumn<QByteArray>("linea");
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("ruta");
        const auto fila = [](const char *nombre, const QByteArray &linea, const char *tipo,
                             qint64 bytes, const char *ruta) {
            QTest::newRow(nombre) << linea << QString::fromUtf8(tipo) << bytes
                                  << QString::fromUtf8(ruta);
        };
        fila("carpeta", "d    0 docs/", "d", 0, "docs/");
        fila("espacios", "f    1234 a b/c d.txt ", "f", 1234, "a b/c d.txt ");
        fila("cuatro que no se leen", "fXYZW1234 x", "f", 1234, "x");
        fila("muchos espacios", "-0644       7    x", "-", 7, "x");
        fila("tabulador", "f    12\tx y", "f", 0, "y");
        fila("espacio como tipo", "      5 x", " ", 5, "x");
        fila("no es número", "f    12abc x", "f", 0, "x");
        fila("hexadecimal", "f    0x10 x", "f", 0, "x");
        fila("negativo", "f    -5 x", "f", -5, "x");
        fila("con signo", "f    +5 x", "f", 5, "x");
        fila("dos signos", "f    +-5 x", "f", 0, "x");
        fila("solo el signo", "f    + x", "f", 0, "x");
        fila("el mayor", "f    9223372036854775807 x", "f", std::numeric_limits<qint64>::max(),
             "x");
        fila("el menor", "f    -9223372036854775808 x", "f", std::numeric_limits<qint64>::min(),
             "x");
        fila("uno más", "f    9223372036854775808 x", "f", 0, "x");
        fila("enorme", "f    99999999999999999999 x", "f", 0, "x");
        fila("más de 4 GiB", "f    5000000000 x", "f", 5000000000, "x");
        fila("chino", "-0644 1 照片/猫", "-", 1, "照片/猫");
        // Characters, not bytes, in the head.
        fila("tipo con tilde", "ñ0644 12 x", "ñ", 12, "x");
        fila("tipo descompuesto",
             "n\u0303"
             "0644 12 x",
             "n\u0303", 12, "x");
        fila("tipo de dos partes",
             "\U0001F1EA\U0001F1F8"
             "0644 12 x",
             "\U0001F1EA\U0001F1F8", 12, "x");
        fila("cuatro con tilde", "-áéíó12 x", "-", 12, "x");
        fila("tilde tras el quinto", "-0644\u0301 12 x y", "-", 12, "x y");
    }
    void unaLinea() {
        QFETCH(QByteArray, linea);
        QFETCH(QString, tipo);
        QFETCH(qint64, bytes);
        QFETCH(QString, ruta);
        const auto entradas = leeListado(linea);
        QCOMPARE(entradas.size(), 1);
        QCOMPARE(entradas[0].tipo.texto(), tipo);
        QCOMPARE(entradas[0].bytes, bytes);
        QCOMPARE(entradas[0].ruta, ruta);
    }

    // A character like any other, though Qt likes to drop it.
    void unaMarcaDeOrdenSeQueda() {
        const auto entradas = leeListado("-0644 1 \xef\xbb\xbfx\n");
        QCOMPARE(entradas.value(0).ruta, QStringLiteral("\uFEFFx"));
    }

    void otrasLineasNoDanNada() {
        for (const char *linea :
             {"", "-", "-0644", "-0644 ", "-0644     ", "-0644 12", "-0644 12 ", "-064412   ",
              "total", "Archivo", "ñ", "ñáéíó", "ñáéíó  ", "-0644\u0301", "-0644 12\tx"})
            QVERIFY2(leeListado(linea).isEmpty(), linea);
    }

    void cadaFinDeLineaSepara() {
        const auto entradas =
            leeListado("-0644 1 a\n-0644 2 b\r\n\r\n-0644 3 c\r-0644 4 d\v-0644 5 e\f"
                       "-0644 6 f\u0085-0644 7 g\u2028-0644 8 h\u2029"
                       "-0644 9 i\u00a0\u2022\u0107");
        QStringList rutas;
        for (const Entrada &entrada : entradas)
            rutas.append(entrada.ruta);
        const QStringList esperadas{"a", "b", "c", "d", "e", "f", "g", "h", "i\u00a0\u2022\u0107"};
        QCOMPARE(rutas, esperadas);
        QCOMPARE(entradas[8].bytes, 9);
    }

    void loQueNoEsUtf8NoDaNada() {
        const QByteArray buena = "-0644 1 a\n";
        QCOMPARE(leeListado(buena + buena).size(), 2);
        for (const char *mala : {"-0644 1 \xff\n", "\xc3", "-0644 1 \xe2\x80", "\xed\xa0\x80\n",
                                 "\xc0\x8a\n", "\xf4\x90\x80\x80\n"}) {
            QVERIFY(leeListado(buena + mala).isEmpty());
            QVERIFY(leeListado(mala + buena).isEmpty());
        }
    }

    void unMillonDeLineasSinEntradas() {
        const QByteArray ruido =
            QByteArray("basura\n").repeated(500000) + QByteArray("\xc3\xb1\n").repeated(500000);
        QCOMPARE(leeListado(ruido).size(), 0);
        QCOMPARE(leeListado(ruido + "-0644 1 a").size(), 1);
    }

    void cadaEntradaTieneSuIdentidad() {
        const QByteArray muchas = QByteArray("-0644 1 a\n").repeated(20000);
        QSet<QUuid> vistas;
        for (const auto &listado : {leeListado(muchas), leeListado(muchas)}) {
            for (const Entrada &entrada : listado) {
                QCOMPARE(entrada.id.version(), QUuid::Random);
                QCOMPARE(entrada.id.variant(), QUuid::DCE);
                vistas.insert(entrada.id);
            }
        }
        QCOMPARE(vistas.size(), 40000);
        QVERIFY(!(leeListado("-0644 1 a").first() == leeListado("-0644 1 a").first()));
    }

    void laIgualdadEsCanonica() {
        const Entrada a = leeListado("-0644 1 cami\u00f3n").first();
        Entrada b = a;
        b.ruta = QStringLiteral("camio\u0301n");
        QVERIFY(a == b);
        QCOMPARE(qHash(a), qHash(b));
        b.tipo = Caracter('d');
        QVERIFY(!(a == b));
        QVERIFY(b.tipo == 'd' && !(a.tipo == 'd'));
        b = a;
        b.bytes = 2;
        QVERIFY(!(a == b));
        b = a;
        b.ruta = QStringLiteral("camion");
        QVERIFY(!(a == b));
        QVERIFY(Caracter(QStringLiteral("\u00f1")) == Caracter(QStringLiteral("n\u0303")));
    }

    void nombreYCarpeta_data() {
        QTest::addColumn<QString>("ruta");
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("carpeta");
        QTest::newRow("anidada") << "docs/a/b.txt"
                                 << "b.txt"
                                 << "docs/a";
        QTest::newRow("barras de más") << "/docs//a/b.txt"
                                       << "b.txt"
                                       << "docs/a";
        QTest::newRow("carpeta") << "docs/"
                                 << "docs"
                                 << "";
        QTest::newRow("suelta") << "b.txt"
                                << "b.txt"
                                << "";
        QTest::newRow("una barra") << "/"
                                   << "/"
                                   << "";
        QTest::newRow("solo barras") << "///"
                                     << "///"
                                     << "";
        QTest::newRow("espacio final") << "a b/c d.txt "
                                       << "c d.txt "
                                       << "a b";
    }
    void nombreYCarpeta() {
        QFETCH(QString, ruta);
        Entrada entrada;
        entrada.ruta = ruta;
        QTEST(entrada.nombre(), "nombre");
        QTEST(entrada.carpeta(), "carpeta");
    }
};

QTEST_GUILESS_MAIN(TstListado)
#include "tst_listado.moc"
