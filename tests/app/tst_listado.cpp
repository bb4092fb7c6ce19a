// The listing as text: lines, fields, entries.
#include "motor/listado.h"

#include <QSet>
#include <QTest>

static_assert(sizeof(Entrada) <= 56, "there may be a million of them");

namespace {

// Each entry as "type|bytes|path".
QStringList lee(const QByteArray &salida) {
    QStringList todas;
    for (const Entrada &entrada : leeListado(salida))
        todas.append(QStringLiteral("%1|%2|%3")
                         .arg(entrada.tipo.texto())
                         .arg(entrada.bytes)
                         .arg(entrada.ruta));
    return todas;
}

} // namespace

class TstListado : public QObject {
    Q_OBJECT

private slots:
    void unaLinea() {
        const std::pair<const char *, const char *> casos[]{
            {"d    0 docs/", "d|0|docs/"},
            {"f    1234 a b/c d.txt ", "f|1234|a b/c d.txt "},
            {"fXYZW1234 x", "f|1234|x"}, // four that are not read
            {"-0644       7    x", "-|7|x"},
            {"f    12\tx y", "f|0|y"},
            {"      5 x", " |5|x"},
            {"f    12abc x", "f|0|x"},
            {"f    0x10 x", "f|0|x"},
            {"f    -5 x", "f|-5|x"},
            {"f    +5 x", "f|5|x"},
            {"f    +-5 x", "f|0|x"},
            {"f    + x", "f|0|x"},
            {"f    9223372036854775807 x", "f|9223372036854775807|x"},
            {"f    -9223372036854775808 x", "f|-9223372036854775808|x"},
            {"f    9223372036854775808 x", "f|0|x"},
            {"-0644 1 照片/猫", "-|1|照片/猫"},
            // A character like any other, though Qt likes to drop it.
            {"-0644 1 \uFEFFx", "-|1|\uFEFFx"},
            // Characters, not bytes, in the head.
            {"ñ0644 12 x", "ñ|12|x"},
            {"n\u03030644 12 x", "n\u0303|12|x"},
            {"\U0001F1EA\U0001F1F80644 12 x", "\U0001F1EA\U0001F1F8|12|x"},
            {"-áéíó12 x", "-|12|x"},
            {"-0644\u0301 12 x y", "-|12|x y"},
        };
        for (const auto &[linea, entrada] : casos)
            QCOMPARE(lee(linea), QStringList{entrada});
    }

    void otrasLineasNoDanNada() {
        for (const char *linea :
             {"", "-", "-0644", "-0644 ", "-0644     ", "-0644 12", "-0644 12 ", "-064412   ",
              "total", "Archivo", "ñ", "ñáéíó", "ñáéíó  ", "-0644\u0301", "-0644 12\tx"})
            QVERIFY2(leeListado(linea).isEmpty(), linea);
    }

    void cadaFinDeLineaSepara() {
        QCOMPARE(lee("-0644 1 a\n-0644 2 b\r\n\r\n-0644 3 c\r-0644 4 d\v-0644 5 e\f"
                     "-0644 6 f\u0085-0644 7 g\u2028-0644 8 h\u2029-0644 9 i\u00a0\u2022\u0107"),
                 (QStringList{"-|1|a", "-|2|b", "-|3|c", "-|4|d", "-|5|e", "-|6|f", "-|7|g",
                              "-|8|h", "-|9|i\u00a0\u2022\u0107"}));
    }

    void loQueNoEsUtf8NoDaNada() {
        const QByteArray buena = "-0644 1 a\n";
        for (const char *mala : {"-0644 1 \xff\n", "\xc3", "-0644 1 \xe2\x80", "\xed\xa0\x80\n",
                                 "\xc0\x8a\n", "\xf4\x90\x80\x80\n"}) {
            QVERIFY(leeListado(buena + mala).isEmpty());
            QVERIFY(leeListado(mala + buena).isEmpty());
        }
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
    }

    void laIgualdadEsCanonica() {
        const Entrada a = leeListado("-0644 1 cami\u00f3n").first();
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

    void nombreYCarpeta() {
        const std::array<const char *, 3> casos[]{
            {"docs/a/b.txt", "b.txt", "docs/a"},
            {"/docs//a/b.txt", "b.txt", "docs/a"},
            {"docs/", "docs", ""},
            {"/", "/", ""},
            {"///", "///", ""},
            {"a b/c d.txt ", "c d.txt ", "a b"},
        };
        for (const auto &[ruta, nombre, carpeta] : casos) {
            const Entrada entrada{{}, QString::fromUtf8(ruta), 0, Caracter('-')};
            QCOMPARE(entrada.nombre(), QString(nombre));
            QCOMPARE(entrada.carpeta(), QString(carpeta));
        }
    }
};

QTEST_GUILESS_MAIN(TstListado)
#include "tst_listado.moc"
