// What is read of texts: lines, progress, listings, and the file URLs that carry
// any name.
#include "lugares/ruta.h"
#include "textos/lineas.h"
#include "textos/listado.h"
#include "textos/progreso.h"

#include <QSet>
#include <QTest>

static_assert(sizeof(Entrada) <= 56, "there may be a million of them");

namespace {

QList<Entrada> lista(const QByteArray &salida) {
    return leeListado(salida)->lista();
}

// Each entry as "type|bytes|path".
QStringList lee(const QByteArray &salida) {
    QStringList todas;
    for (const Entrada &entrada : lista(salida))
        todas.append(QStringLiteral("%1|%2|%3")
                         .arg(entrada.tipo.texto())
                         .arg(entrada.bytes)
                         .arg(entrada.ruta));
    return todas;
}

} // namespace

class TstTextos : public QObject {
    Q_OBJECT

private slots:
    void cadaFinDeLineaSepara() {
        const QString fines = QString::fromUtf8("\n|\r|\r\n|\n\v|\f|\u0085|\u2028|\u2029");
        QString listado;
        QStringList entradas;
        for (const QString &fin : fines.split(u'|')) {
            listado += "-0644 1 a b\tc\u00a0\u2022\u0107" + fin;
            entradas.append("-|1|a b\tc\u00a0\u2022\u0107");
        }
        QCOMPARE(lineas::separa(listado).size(), entradas.size());
        QCOMPARE(lee(listado.toUtf8()), entradas);
    }

    void unaLinea() {
        const std::pair<const char *, const char *> casos[]{
            {"d    0 docs/", "d|0|docs/"},
            {"f    1234 a b/c d.txt ", "f|1234|a b/c d.txt "},
            {"fXYZW1234 x", "f|1234|x"}, // four that are not read
            {"-0644       7    x", "-|7|x"},
            {"f    12abc x", "f|0|x"},
            {"f    -5 x", "f|-5|x"},
            {"f    +5 x", "f|5|x"},
            {"f    9223372036854775807 x", "f|9223372036854775807|x"},
            {"f    9223372036854775808 x", "f|0|x"},
            // A character like any other, though Qt likes to drop it.
            {"-0644 1 \uFEFFx", "-|1|\uFEFFx"},
            // Characters, not bytes, in the head.
            {"ñ0644 12 x", "ñ|12|x"},
            {"\U0001F1EA\U0001F1F80644 12 x", "\U0001F1EA\U0001F1F8|12|x"},
            {"-0644\u0301 12 x y", "-|12|x y"},
        };
        for (const auto &[linea, entrada] : casos)
            QCOMPARE(lee(linea), QStringList{entrada});
        for (const char *linea : {"", "-0644", "-0644     ", "-0644 12", "-0644 12 ", "-064412   ",
                                  "total", "ñáéíó", "ñáéíó  ", "-0644\u0301", "-0644 12\tx"})
            QVERIFY2(lista(linea).isEmpty(), linea);
    }

    void loQueNoEsUtf8NoDaNada() {
        const QByteArray buena = "-0644 1 a\n";
        for (const char *mala : {"-0644 1 \xff\n", "-0644 1 \xe2\x80", "\xed\xa0\x80\n"}) {
            QVERIFY(lista(buena + mala).isEmpty());
            QVERIFY(lista(mala + buena).isEmpty());
        }
        QCOMPARE(lineas::texto("a\xc3"), QString());
        QVERIFY(progreso::leeTrozo("2/4 ficheros (50%), 1 MiB\n\xff", 0).isEmpty());
    }

    void masDeLoQueCabeNoSeLee() {
        const QByteArray cuatro = QByteArray("-0644 1 a\n").repeated(3) + "-0644 1 b";
        QCOMPARE(leeListado(cuatro, 4)->cuantas(), 4U);
        QVERIFY(!leeListado(cuatro, 3));
        QVERIFY(!leeListado(cuatro, 2));
    }

    void cadaEntradaTieneSuIdentidad() {
        const QByteArray muchas = QByteArray("-0644 1 a\n").repeated(20000);
        QSet<QUuid> vistas;
        for (const Entrada &entrada : lista(muchas) + lista(muchas)) {
            QCOMPARE(entrada.id.version(), QUuid::Random);
            vistas.insert(entrada.id);
        }
        QCOMPARE(vistas.size(), 40000);
    }

    void laIgualdadEsCanonica() {
        const Entrada a = lista("-0644 1 cami\u00f3n").constFirst();
        Entrada b = a;
        b.ruta = QStringLiteral("camio\u0301n");
        QVERIFY(a == b);
        QCOMPARE(qHash(a), qHash(b));
        for (const Entrada &otra :
             {Entrada{a.id, a.ruta, 1, Caracter('d')}, Entrada{a.id, a.ruta, 2, a.tipo},
              Entrada{a.id, QStringLiteral("camion"), 1, a.tipo},
              Entrada{QUuid::createUuid(), a.ruta, 1, a.tipo}})
            QVERIFY(!(a == otra));
        QVERIFY(Caracter(QStringLiteral("\u00f1")) == Caracter(QStringLiteral("n\u0303")));
    }

    void unaLineaDeProgreso() {
        struct {
            const char *linea;
            double segundos;
            const char *leida; // fraction, words, seconds to go
        } const casos[]{
            {"1/4 ficheros (25%), 7 MiB", 10, "0.25 1 de 4 archivos 30"},
            {"1/4 ficheros (25%), 7 MiB", 1.99, "0.25 1 de 4 archivos -1"},
            {"3/9 ficheros (1.0%), 7 MiB", 2, "0.01 3 de 9 archivos 198"},
            {"0/1 ficheros (0.4%), 0 MiB", 60, "0.004 1 archivo -1"},
            {"3/9 ficheros (1.2.3%), 12 MiB", 9, "0 3 de 9 archivos -1"},
            // A number that fits nowhere is passed over.
            {"99999999999999999999/40 ficheros (30.5%), 7 MiB", 0, "0.305 40 de 30 archivos -1"},
            {"deriving key 3/9 ficheros (50%), 12 MiB", 0, "0.5 3 de 9 archivos -1"},
            {"orcalin: deriving key (scrypt)", 9, "0 preparando el cifrado… -1"},
        };
        for (const auto &[linea, segundos, leida] : casos) {
            const auto estado = progreso::lee(QString(linea), segundos);
            QVERIFY2(estado, linea);
            QCOMPARE(QStringLiteral("%1 %2 %3")
                         .arg(estado->pct)
                         .arg(estado->detalle)
                         .arg(estado->restante.value_or(-1)),
                     QString(leida));
        }
        for (const QStringView linea :
             {u"12/40 Ficheros (30.5%), 7 MiB", u"12/40 ficheros (30.5), 7 MiB",
              u"2/40 ficheros (30.", u"5%), 7 MiB", u"Deriving key", u""})
            QVERIFY2(!progreso::lee(linea, 9), qPrintable(linea.toString()));
        const auto varias =
            progreso::leeTrozo("ing key\rderiving key\r1/4 ficheros (25%), 0 MiB\r\n"
                               "2/4 ficheros (50%), 1 MiB\n3/4 fich",
                               0);
        QCOMPARE(varias.size(), 3);
        QCOMPARE(varias.last().detalle, QStringLiteral("2 de 4 archivos"));
    }

    void cualquierNombreCabeEnUnaUrl() {
        for (const char *nombre : {"/tmp/a b", "/tmp/100%25 #1?x=\"y\"'&;[]", "/tmp/-l\nnea",
                                   "/tmp/\xff\xc3(\xe2\x82", "/tmp/ca\xc3\xb1o\x6e\xcc\x83", "/"})
            QCOMPARE(ruta::nativa(ruta::url(QByteArray(nombre))), nombre);
        QCOMPARE(ruta::nativa(QUrl("file:///home/u/fotos/")), "/home/u/fotos");
        QCOMPARE(ruta::nativa(QUrl("https://u/fotos")), QByteArray());
        QCOMPARE(ruta::ultimoComponente(QUrl("file:///u/fotos%20a/")), QStringLiteral("fotos a"));
        QCOMPARE(ruta::ultimoComponente(ruta::url(QByteArray("/u/a\nb\xff"))),
                 QStringLiteral("a\uFFFDb\uFFFD"));
    }

    void laExtensionDeUnArchivo() {
        for (const char *ruta : {"/a/x.tar.Okz", "/a/\xff.okz"})
            QVERIFY2(ruta::esArchivo(ruta::url(QByteArray(ruta))), ruta);
        for (const char *ruta : {"/a/okz", "/a/.okz", "/a/x.okz.zip", "/a.okz/x"})
            QVERIFY2(!ruta::esArchivo(ruta::url(QByteArray(ruta))), ruta);
    }
};

QTEST_GUILESS_MAIN(TstTextos)
#include "tst_textos.moc"
