// The text rules: lines, progress, and the file URLs that carry any name.
#include "motor/lineas.h"
#include "motor/progreso.h"
#include "motor/ruta.h"

#include <QTest>

using estados::Trabajando;

class TstLineas : public QObject {
    Q_OBJECT

private slots:
    void cadaFinDeLineaSepara() {
        const QString texto = QString::fromUtf8("a\nb\rc\r\n\n\vd\fe\u0085f\u2028g\u2029h i\tj");
        QStringList leidas;
        for (const QStringView linea : lineas::separa(texto))
            leidas.append(linea.toString());
        const QStringList esperadas{"a", "b", "c", "d", "e", "f", "g", "h i\tj"};
        QCOMPARE(leidas, esperadas);
        QVERIFY(lineas::separa(u"\n\r\n").isEmpty());
    }

    void loQueNoEsUtf8EsTextoVacio() {
        QCOMPARE(lineas::texto("a\xff"), QString());
        QCOMPARE(lineas::texto("a\xc3"), QString());
        QCOMPARE(lineas::texto("\xc3\xb1"), QStringLiteral("ñ"));
    }

    void unaLineaDeProgreso_data() {
        QTest::addColumn<QString>("linea");
        QTest::addColumn<double>("segundos");
        QTest::addColumn<double>("pct");
        QTest::addColumn<QString>("detalle");
        QTest::addColumn<double>("restante"); // negative: none
        const double mitad = (100 - 30.5) * 10 / 30.5;
        QTest::newRow("con estimación")
            << "12/40 ficheros (30.5%), 7 MiB" << 10.0 << 0.305 << "12 de 40 archivos" << mitad;
        QTest::newRow("demasiado pronto")
            << "12/40 ficheros (30.5%), 7 MiB" << 1.99 << 0.305 << "12 de 40 archivos" << -1.0;
        QTest::newRow("justo a tiempo")
            << "3/9 ficheros (1.0%), 7 MiB" << 2.0 << 0.01 << "3 de 9 archivos" << 198.0;
        QTest::newRow("menos del 1 %")
            << "0/1 ficheros (0.4%), 0 MiB" << 60.0 << 0.004 << "1 archivo" << -1.0;
        QTest::newRow("dentro de otra") << "progress: 3/9 ficheros (50%), 12 MiB done" << 0.0 << 0.5
                                        << "3 de 9 archivos" << -1.0;
        QTest::newRow("dos puntos")
            << "3/9 ficheros (1.2.3%), 12 MiB" << 9.0 << 0.0 << "3 de 9 archivos" << -1.0;
        QTest::newRow("punto final")
            << "3/9 ficheros (50.%), 12 MiB" << 0.0 << 0.5 << "3 de 9 archivos" << -1.0;
        QTest::newRow("número enorme") << "99999999999999999999/40 ficheros (30.5%), 7 MiB" << 0.0
                                       << 0.305 << "40 de 30 archivos" << -1.0;
        QTest::newRow("clave y progreso")
            << "deriving key 3/9 ficheros (50%), 12 MiB" << 0.0 << 0.5 << "3 de 9 archivos" << -1.0;
        QTest::newRow("clave") << "orcalin: deriving key (scrypt)" << 9.0 << 0.0
                               << "preparando el cifrado…" << -1.0;
    }
    void unaLineaDeProgreso() {
        QFETCH(QString, linea);
        QFETCH(double, segundos);
        QFETCH(double, pct);
        QFETCH(QString, detalle);
        QFETCH(double, restante);
        const auto leido = progreso::lee(linea, segundos);
        QVERIFY(leido);
        QCOMPARE(leido->pct, pct);
        QCOMPARE(leido->detalle, detalle);
        QCOMPARE(leido->restante.value_or(-1), restante);
    }

    void otrasLineasNoDicenNada() {
        for (const QStringView linea :
             {u"12/40 Ficheros (30.5%), 7 MiB", u"12/40 ficheros (30.5), 7 MiB",
              u"2/40 ficheros (30.", u"5%), 7 MiB", u"Deriving key", u"Error: lleno", u""})
            QVERIFY2(!progreso::lee(linea, 9), qPrintable(linea.toString()));
    }

    void unTrozoDaSusEstadosEnOrden() {
        const auto leidos =
            progreso::leeTrozo("ing key\rderiving key\r1/4 ficheros (25%), 0 MiB\r\n"
                               "2/4 ficheros (50%), 1 MiB\n3/4 fich",
                               0);
        const QList<Trabajando> esperados{
            {0, QStringLiteral("preparando el cifrado…"), std::nullopt},
            {0.25, QStringLiteral("1 de 4 archivos"), std::nullopt},
            {0.5, QStringLiteral("2 de 4 archivos"), std::nullopt}};
        QCOMPARE(leidos.size(), esperados.size());
        QVERIFY(leidos == esperados);
        QVERIFY(progreso::leeTrozo("2/4 ficheros (50%), 1 MiB\n\xff", 0).isEmpty());
    }

    void cualquierNombreCabeEnUnaUrl() {
        for (const QByteArray &nombre :
             {QByteArray("/tmp/a b"), QByteArray("/tmp/100%25 #1?x=\"y\"'&;[]"),
              QByteArray("/tmp/-l\nnea"), QByteArray("/tmp/\xff\xc3(\xe2\x82"),
              QByteArray("/tmp/ca\xc3\xb1o\x6e\xcc\x83"), QByteArray("/")})
            QCOMPARE(ruta::nativa(ruta::url(nombre)), nombre);
        QCOMPARE(ruta::nativa(QUrl(QStringLiteral("file:///home/u/fotos/"))), "/home/u/fotos");
        QCOMPARE(ruta::nativa(QUrl(QStringLiteral("https://u/fotos"))), QByteArray());
        QCOMPARE(ruta::ultimoComponente(QUrl(QStringLiteral("file:///u/fotos%20a/"))),
                 QStringLiteral("fotos a"));
        QCOMPARE(ruta::ultimoComponente(ruta::url(QByteArray("/u/a\nb\xff"))),
                 QStringLiteral("a\uFFFDb\uFFFD"));
    }

    void laExtensionDeUnArchivo() {
        const auto es = [](const char *ruta) {
            return ruta::esArchivo(ruta::url(QByteArray(ruta)));
        };
        QVERIFY(es("/a/x.okz") && es("/a/x.OKZ") && es("/a/x.tar.Okz") && es("/a/\xff.okz"));
        QVERIFY(!es("/a/okz") && !es("/a/.okz") && !es("/a/x.okz.zip") && !es("/a.okz/x"));
        QVERIFY(!ruta::esArchivo(QUrl(QStringLiteral("https://a/x.okz"))));
    }
};

QTEST_GUILESS_MAIN(TstLineas)
#include "tst_lineas.moc"
