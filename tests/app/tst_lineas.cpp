// The text rules: lines, progress, and the file URLs that carry any name.
#include "motor/lineas.h"
#include "motor/progreso.h"
#include "motor/ruta.h"

#include <QTest>

class TstLineas : public QObject {
    Q_OBJECT

private slots:
    void cadaFinDeLineaSepara() {
        const QString texto = QString::fromUtf8("a\nb\rc\r\n\n\vd\fe\u0085f\u2028g\u2029h i\tj");
        QStringList leidas;
        for (const QStringView linea : lineas::separa(texto))
            leidas.append(linea.toString());
        QCOMPARE(leidas, (QStringList{"a", "b", "c", "d", "e", "f", "g", "h i\tj"}));
        QCOMPARE(lineas::texto("a\xc3"), QString()); // not UTF-8
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
            {"progress: 3/9 ficheros (50%), 12 MiB done", 0, "0.5 3 de 9 archivos -1"},
            {"3/9 ficheros (1.2.3%), 12 MiB", 9, "0 3 de 9 archivos -1"},
            {"3/9 ficheros (50.%), 12 MiB", 0, "0.5 3 de 9 archivos -1"},
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
              u"2/40 ficheros (30.", u"5%), 7 MiB", u"Deriving key", u"Error: lleno", u""})
            QVERIFY2(!progreso::lee(linea, 9), qPrintable(linea.toString()));
    }

    void unTrozoDaSusEstadosEnOrden() {
        QStringList leidos;
        for (const auto &estado :
             progreso::leeTrozo("ing key\rderiving key\r1/4 ficheros (25%), 0 MiB\r\n"
                                "2/4 ficheros (50%), 1 MiB\n3/4 fich",
                                0))
            leidos.append(estado.detalle);
        QCOMPARE(leidos,
                 (QStringList{"preparando el cifrado…", "1 de 4 archivos", "2 de 4 archivos"}));
        QVERIFY(progreso::leeTrozo("2/4 ficheros (50%), 1 MiB\n\xff", 0).isEmpty());
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
        const auto es = [](const char *ruta) {
            return ruta::esArchivo(ruta::url(QByteArray(ruta)));
        };
        QVERIFY(es("/a/x.okz") && es("/a/x.OKZ") && es("/a/x.tar.Okz") && es("/a/\xff.okz"));
        QVERIFY(!es("/a/okz") && !es("/a/.okz") && !es("/a/x.okz.zip") && !es("/a.okz/x"));
    }
};

QTEST_GUILESS_MAIN(TstLineas)
#include "tst_lineas.moc"
