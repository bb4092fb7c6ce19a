// The archive browser's rules, without a window.
#include "banco.h"
#include "escritoriofalso.h"
#include "pantallas/explorador.h"
#include "sistema/hilos.h"
#include "trabajos/saque.h"

#include <QAbstractItemModelTester>
#include <QTest>

using Panel = Explorador::Panel;

namespace {

struct Asiento {
    char tipo;
    const char *ruta;
    qint64 bytes = 0;
};

ContenidoCompartido contenido(std::initializer_list<Asiento> asientos) {
    Entradas entradas;
    for (const Asiento &a : asientos)
        entradas.anade(Caracter(a.tipo), a.bytes, a.ruta);
    return preparaContenido(std::move(entradas));
}

ContenidoCompartido contenido(const QStringList &rutas) {
    Entradas entradas;
    for (const QString &ruta : rutas)
        entradas.anade(Caracter('-'), 0, ruta.toStdString());
    return preparaContenido(std::move(entradas));
}

QStringList visibles(const Filas &filas) {
    QStringList rutas;
    for (int fila = 0; fila < filas.rowCount(); ++fila)
        rutas.append(filas.entrada(fila).ruta);
    return rutas;
}

// What a search leaves of these paths.
QStringList hallado(const QStringList &rutas, const QString &busca) {
    EscritorioFalso escritorio;
    Filas filas(escritorio);
    filas.ponContenido(contenido(rutas));
    filas.busca(busca);
    return visibles(filas);
}

// A mark for each row that is being taken out.
QString girando(const Filas &filas) {
    QString marcas;
    for (int fila = 0; fila < filas.rowCount(); ++fila)
        marcas += filas.data(filas.index(fila), Filas::Abriendose).toBool() ? u'x' : u'-';
    return marcas;
}

// A browser of an archive that the scripted engine lists.
struct Escena : Banco {
    using Banco::Banco;
    EscritorioFalso escritorio;
    Explorador explorador{url("x.okz"), escritorio};
    Filas &filas = *explorador.filas();
};

} // namespace

class TstExplorador : public QObject {
    Q_OBJECT

private slots:
    void laBusqueda() {
        const QStringList dos{"l\u00f3n", "lo\u0301n"};
        struct {
            QStringList rutas;
            const char *busca;
            QStringList halladas;
        } const casos[]{
            {{"DOCS/a.txt", "b"}, "cs/A", {"DOCS/a.txt"}},
            {{"a b", "ab"}, " ", {"a b"}},
            {{"ab", "cd"}, "b\nc", {}},
            {{"文档/简历"}, "档/简", {"文档/简历"}},
            // Accents count, however they are written.
            {{"Ñandú", "nandu"}, "ñANDÚ", {"Ñandú"}},
            {dos, "lo\u0301n", dos},
            {dos, "L\u00d3", dos},
            {dos, "lo", {}},
            // No composed form exists: only the border of the character tells.
            {{"ax\u0302b", "ax\u0302b/ax"}, "ax", {"ax\u0302b/ax"}},
        };
        for (const auto &[rutas, busca, halladas] : casos)
            QCOMPARE(hallado(rutas, busca), halladas);
    }

    void seguirEscribiendoDaLoMismoQueEmpezar() {
        EscritorioFalso escritorio;
        Filas filas(escritorio);
        const QStringList todo{"cancio", "cancio\u0301n", "x\u0302", "x", "Canci\u00d3", "ba"};
        filas.ponContenido(contenido(todo));
        const QAbstractItemModelTester vigilante(&filas);
        QString texto;
        const QString letras = QStringLiteral("cancio\u0301n");
        for (const QChar c : letras) {
            texto += c;
            filas.busca(texto);
            QCOMPARE(visibles(filas), hallado(todo, texto));
        }
        filas.busca({});
        filas.eligeTodo();
        filas.alterna(2);
        QCOMPARE(filas.rutasElegidas().join(' '), todo.join(' ').remove(" x\u0302"));
        filas.ponContenido(contenido(todo)); // other entries, whatever their names
        QCOMPARE(filas.elegidas(), 0);
    }

    void loQueDiceUnaFila() {
        EscritorioFalso escritorio;
        Filas filas(escritorio);
        filas.ponContenido(contenido({{'d', "fotos/"},
                                      {'-', "fotos/a/b.jpg", 1234},
                                      {'l', "e"},
                                      {'h', "/h/i//j", 9},
                                      {'x', "//", 9}}));
        const auto dice = [&](int fila) {
            QStringList todo;
            for (const int papel :
                 {Filas::Nombre, Filas::Carpeta, Filas::Icono, Filas::Tamano, Filas::Descripcion})
                todo.append(filas.data(filas.index(fila), papel).toString());
            return todo.join(u'|');
        };
        const QStringList dicho{"fotos||folder||fotos, carpeta",
                                "b.jpg|fotos/a|doc|1234 b|b.jpg, en fotos/a, archivo, 1234 b",
                                "e||link||e, enlace", "j|h/i|link||j, en h/i, enlace",
                                "//||doc||//, archivo"};
        for (int fila = 0; fila < dicho.size(); ++fila)
            QCOMPARE(dice(fila), dicho[fila]);
    }

    void raicesDeLoElegido() {
        const auto todo = contenido({{'d', "fotos/", 4096},
                                     {'-', "fotos/a", 10},
                                     {'d', "fotos/b"},
                                     {'-', "fotos/b/c", 20},
                                     {'-', "fotos.txt", 40},
                                     {'-', "d", 80},
                                     {'-', "d", 80},
                                     {'-', "e", std::numeric_limits<qint64>::max()},
                                     {'-', "f", std::numeric_limits<qint64>::max()},
                                     {'-', "g", -5}});
        const auto de = [&](const std::vector<uint32_t> &elegidas) {
            const Raices raices = raicesDe(*todo, elegidas);
            return raices.rutas.join(u' ') + u'=' + QString::number(raices.bytes);
        };
        QCOMPARE(de({0, 1, 2, 3, 4}), QStringLiteral("fotos/ fotos.txt=4166"));
        QCOMPARE(de({1, 2}), QStringLiteral("fotos/a fotos/b=30"));
        QCOMPARE(de({5, 6, 9}), QStringLiteral("d g=80"));
        QCOMPARE(de({7, 8}), QStringLiteral("e f=%1").arg(1LL << 61U));
    }

    void arrastrarSacaLoElegido() {
        Escena escena({"salida -0644 5 a\\nd0755 0 docs\\n-0644 7 docs/b\\n-0644 9 c"});
        Explorador &explorador = escena.explorador;
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        QStringList dichos;
        // What the mouse carries and where it goes is for the test of the window.
        escena.escritorio.lleva = [&](Saque &saque, const QString &rotulo) {
            explorador.arrastrar(3); // one at a time
            (void)QTest::qWaitFor([&] { return saque.fase() != Saque::Fase::Sacando; }, 20000);
            dichos.append(QStringLiteral("%1 %2").arg(rotulo).arg(saque.urls().size()));
            return true;
        };
        escena.ponMotor({"crea-entrada hola"});
        escena.filas.elige(0);
        escena.filas.estira(2);
        explorador.arrastrar(2);
        QCOMPARE(girando(escena.filas), QStringLiteral("xxx-"));
        QTRY_COMPARE(dichos.size(), 1);
        escena.ponMotor({"crea-entrada ho", "error Error: roto\\n", "sale 1"});
        explorador.arrastrar(3); // was not selected, and goes alone
        escena.filas.elige(0); // it is told of the row it was for, wherever the user is by then
        QTRY_COMPARE(explorador.abrirFallo(), QStringLiteral("roto"));
        QStringList fallos;
        for (int fila = 0; fila < 4; ++fila)
            fallos.append(escena.filas.index(fila).data(Filas::Fallo).toString());
        QCOMPARE(fallos.join('|'), QStringLiteral("|||roto"));
        QCOMPARE(dichos, (QStringList{"3 elementos 2", "c 0"}));
        QCOMPARE(girando(escena.filas), QStringLiteral("----"));
    }

    // For whoever is not looking.
    void elFinalSeAvisa() {
        Escena escena(Guion{""});
        Explorador &explorador = escena.explorador;
        escena.escritorio.carpeta = escena.url("sacado");
        explorador.recuperarTodo();
        QTRY_COMPARE(explorador.panel(), Panel::Recuperado);
        QCOMPARE(escena.escritorio.partes.first(), std::optional(0.0));
        QCOMPARE(escena.escritorio.partes.last(), std::nullopt);
        explorador.volver(); // no job: nothing to tell
        QCOMPARE(escena.escritorio.avisos, QStringList{"Recuperado: De x.okz a «sacado»."});
    }
};

QTEST_GUILESS_MAIN(TstExplorador)
#include "tst_explorador.moc"
