// The archive browser's rules, without a window.
#include "banco.h"
#include "escritoriofalso.h"
#include "motor/saque.h"
#include "pantallas/explorador.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using Panel = Explorador::Panel;

namespace {

Entrada entrada(char tipo, const char *ruta, qint64 bytes = 0) {
    return {QUuid::createUuid(), QString::fromUtf8(ruta), bytes, Caracter(tipo)};
}

ContenidoCompartido contenido(std::initializer_list<const char *> rutas) {
    QList<Entrada> entradas;
    for (const char *ruta : rutas)
        entradas.append(entrada('-', ruta));
    return preparaContenido(entradas);
}

QStringList visibles(const Filas &filas) {
    QStringList rutas;
    for (int fila = 0; fila < filas.rowCount(); ++fila)
        rutas.append(filas.entrada(fila).ruta);
    return rutas;
}

// What a search leaves of these paths.
QStringList hallado(std::initializer_list<const char *> rutas, const char *texto) {
    EscritorioFalso escritorio;
    Filas filas(escritorio);
    filas.ponContenido(contenido(rutas));
    filas.busca(QString::fromUtf8(texto));
    return visibles(filas);
}

// A browser of an archive that the scripted engine lists.
struct Escena : Banco {
    explicit Escena(const QByteArray &listado)
        : Banco(Guion{"salida " + listado}) {}

    EscritorioFalso escritorio;
    Explorador explorador{url("x.okz"), escritorio};
    Filas &filas = *explorador.filas();

    bool carga() {
        explorador.cargar();
        return QTest::qWaitFor([this] { return explorador.panel() == Panel::Contenido; }, 20000);
    }
    // A mark for each row that is being taken out.
    [[nodiscard]] QString girando() const {
        QString marcas;
        for (int fila = 0; fila < filas.rowCount(); ++fila)
            marcas += filas.data(filas.index(fila), Filas::Abriendose).toBool() ? u'x' : u'-';
        return marcas;
    }
};

} // namespace

class TstExplorador : public QObject {
    Q_OBJECT

private slots:
    void laBusqueda() {
        QCOMPARE(hallado({"docs/a.txt", "b"}, "DOCS"), QStringList{"docs/a.txt"});
        QCOMPARE(hallado({"DOCS/a.txt", "b"}, "cs/A"), QStringList{"DOCS/a.txt"});
        QCOMPARE(hallado({"a b", "ab"}, " "), QStringList{"a b"});
        QCOMPARE(hallado({"ab", "cd"}, "b\nc"), QStringList{});
        QCOMPARE(hallado({"Ñandú", "nandu"}, "ñANDÚ"), QStringList{"Ñandú"});
        QCOMPARE(hallado({"文档/简历"}, "档/简"), QStringList{"文档/简历"});
    }

    void losAcentosCuentanDeCualquierForma() {
        const char *compuesta = "canci\u00f3n/a.mp3";
        const char *descompuesta = "cancio\u0301n/a.mp3";
        for (const char *busca : {"canci\u00f3n", "cancio\u0301n", "CANCI\u00d3"})
            QCOMPARE(hallado({compuesta, descompuesta}, busca).size(), 2);
        for (const char *busca : {"cancion", "cancio"})
            QVERIFY(hallado({compuesta, descompuesta}, busca).isEmpty());
        // No composed form exists: only the border of the character tells.
        QVERIFY(hallado({"ax\u0302b"}, "ax").isEmpty());
        QCOMPARE(hallado({"ax\u0302b/ax"}, "ax").size(), 1);
    }

    void seguirEscribiendoDaLoMismoQueEmpezar() {
        EscritorioFalso escritorio;
        Filas filas(escritorio);
        const auto todo =
            contenido({"cancio", "cancio\u0301n", "x\u0302", "x", "Canci\u00d3", "ba"});
        filas.ponContenido(todo);
        const QAbstractItemModelTester vigilante(&filas);
        QString texto;
        for (const QChar c : QStringLiteral("cancio\u0301n")) {
            texto += c;
            filas.busca(texto);
            Filas deNuevas(escritorio);
            deNuevas.ponContenido(todo);
            deNuevas.busca(texto);
            QCOMPARE(visibles(filas), visibles(deNuevas));
        }
        filas.busca(QString());
        QCOMPARE(filas.rowCount(), 6);
    }

    void laSeleccionEsDeLasEntradas() {
        EscritorioFalso escritorio;
        Filas filas(escritorio);
        const QAbstractItemModelTester vigilante(&filas);
        filas.ponContenido(contenido({"a", "b1", "c", "b2", "d"}));
        filas.elige(1);
        filas.estira(3);
        QCOMPARE(filas.rutasElegidas(), (QStringList{"b1", "c", "b2"}));
        filas.alterna(2);
        filas.alterna(4);
        QCOMPARE(filas.rutasElegidas(), (QStringList{"b1", "b2", "d"}));

        filas.busca(QStringLiteral("c")); // hidden, and still selected
        QCOMPARE(filas.elegidas(), 3);
        filas.busca(QStringLiteral("b"));
        filas.eligeTodo();
        QCOMPARE(filas.rutasElegidas(), (QStringList{"b1", "b2"}));
        filas.elige(1);
        QCOMPARE(filas.rutasElegidas(), QStringList{"b2"});
        filas.ponContenido(contenido({"a", "b2"})); // other entries, whatever their names
        QCOMPARE(filas.elegidas(), 0);
    }

    void loQueDiceUnaFila() {
        EscritorioFalso escritorio;
        Filas filas(escritorio);
        filas.ponContenido(
            preparaContenido({entrada('d', "fotos/"), entrada('-', "fotos/a/b.jpg", 1234),
                              entrada('l', "e"), entrada('h', "h", 9), entrada('x', "x", 9)}));
        const auto dice = [&](int fila) {
            QStringList todo;
            for (const int papel :
                 {Filas::Nombre, Filas::Carpeta, Filas::Icono, Filas::Tamano, Filas::Descripcion})
                todo.append(filas.data(filas.index(fila), papel).toString());
            return todo.join(u'|');
        };
        QCOMPARE(dice(0), QStringLiteral("fotos||folder||fotos, carpeta"));
        QCOMPARE(dice(1), QStringLiteral("b.jpg|fotos/a|doc|1234 b|"
                                         "b.jpg, en fotos/a, archivo, 1234 b"));
        QCOMPARE(dice(2), QStringLiteral("e||link||e, enlace"));
        QCOMPARE(dice(3), QStringLiteral("h||link||h, enlace"));
        QCOMPARE(dice(4), QStringLiteral("x||doc||x, archivo"));
    }

    void cargaYCuenta() {
        Escena escena("d0755 0 docs\\n-0644 5 docs/a.txt\\n-0644 7 b");
        Explorador &explorador = escena.explorador;
        QSignalSpy foco(&explorador, &Explorador::focoBusqueda);
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QVERIFY(escena.carga());
        QCOMPARE(foco.size(), 1);
        QCOMPARE(explorador.cuenta(), QStringLiteral("3 elementos"));
        QCOMPARE(explorador.rotuloRecuperar(), QStringLiteral("Recuperar 0"));
        escena.filas.elige(1);
        QCOMPARE(explorador.rotuloRecuperar(), QStringLiteral("Recuperar este"));
        explorador.ponBusca("nada");
        QCOMPARE(explorador.cuenta(), QStringLiteral("0 de 3"));
        QVERIFY(explorador.hayElegidas());
        explorador.ponBusca({});
        explorador.abrir(0); // a folder: its path, and a slash whatever it ends in
        QCOMPARE(explorador.busca(), QStringLiteral("docs/"));
        QCOMPARE(explorador.cuenta(), QStringLiteral("1 de 3"));
    }

    void sinContrasenaSePideYConOtraSeLee() {
        Escena escena("-0644 1 a\nargumentos args\nexige sésamo");
        Explorador &explorador = escena.explorador;
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::PedirClave);
        explorador.enviaClave(); // with nothing: lists without one, and asks again
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QTRY_COMPARE(explorador.panel(), Panel::PedirClave);
        QVERIFY(!escena.argumentos().contains("--password-file"));
        explorador.ponContrasena("sésamo");
        explorador.enviaClave();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
    }

    void recuperarPreguntaDonde() {
        Escena escena("-0644 5 a\\n-0644 5 b\\n-0644 5 c");
        Explorador &explorador = escena.explorador;
        QVERIFY(escena.carga());
        explorador.recuperarElegidas();
        QCOMPARE(escena.escritorio.mensaje, QString()); // nothing selected, nothing asked
        explorador.recuperarTodo();
        QCOMPARE(escena.escritorio.mensaje, QStringLiteral("¿Dónde dejo todo el contenido?"));
        QCOMPARE(explorador.panel(), Panel::Contenido); // cancelled

        escena.ponMotor({"argumentos args"});
        escena.escritorio.carpeta = escena.url("d");
        escena.filas.elige(2);
        escena.filas.alterna(0);
        explorador.recuperarElegidas();
        QCOMPARE(escena.escritorio.mensaje, QStringLiteral("¿Dónde lo dejo?"));
        QTRY_COMPARE(explorador.panel(), Panel::Recuperado);
        const auto args = escena.argumentos();
        QCOMPARE(args.value(5) + args.value(11), "ac");
        explorador.volver();
        QCOMPARE(explorador.panel(), Panel::Contenido);
        QCOMPARE(escena.filas.elegidas(), 2);
    }

    void abrirUnaALaVez() {
        Escena escena("-0644 5 a\\n-0644 5 b");
        QVERIFY(escena.carga());
        escena.ponMotor({"argumentos args", "espera 200", "error Error: roto\\n", "sale 1"});
        escena.explorador.abrir(0);
        escena.explorador.abrir(1); // dropped
        QCOMPARE(escena.girando(), QStringLiteral("x-"));
        QTRY_COMPARE(escena.explorador.abrirFallo(), QStringLiteral("roto"));
        QCOMPARE(escena.girando(), QStringLiteral("--"));
        QCOMPARE(escena.argumentos().count("extract"), 1);
        QVERIFY(escena.escritorio.abiertos.isEmpty());
    }

    void raicesDeLoElegido() {
        const auto contenido = preparaContenido(
            {entrada('d', "fotos/", 4096), entrada('-', "fotos/a", 10), entrada('d', "fotos/b"),
             entrada('-', "fotos/b/c", 20), entrada('-', "fotos.txt", 40), entrada('-', "d", 80),
             entrada('-', "d", 80), entrada('-', "e", std::numeric_limits<qint64>::max()),
             entrada('-', "f", std::numeric_limits<qint64>::max()), entrada('-', "g", -5)});
        const auto de = [&](const std::vector<uint32_t> &elegidas) {
            const Raices raices = raicesDe(*contenido, elegidas);
            return raices.rutas.join(u' ') + u'=' + QString::number(raices.bytes);
        };
        QCOMPARE(de({0, 1, 2, 3, 4}), QStringLiteral("fotos/ fotos.txt=4166"));
        QCOMPARE(de({1, 2}), QStringLiteral("fotos/a fotos/b=30"));
        QCOMPARE(de({5, 6, 9}), QStringLiteral("d g=80"));
        QCOMPARE(de({7, 8}), QStringLiteral("e f=%1").arg(1LL << 61U));
    }

    void arrastrarSacaLoElegido() {
        Escena escena("-0644 5 a\\nd0755 0 docs\\n-0644 7 docs/b\\n-0644 9 c");
        Explorador &explorador = escena.explorador;
        QVERIFY(escena.carga());
        // The mouse waits for the files, and drops them or thinks better of it.
        QString rotulo;
        QList<QUrl> llevadas;
        bool suelta = true;
        escena.escritorio.lleva = [&](Saque &saque, const QString &dado) {
            rotulo = dado + u' ' + escena.girando();
            const QList<QUrl> previstas = saque.urls();
            (void)QTest::qWaitFor([&] { return saque.fase() != Saque::Fase::Sacando; }, 20000);
            llevadas = saque.urls();
            return suelta && previstas == llevadas;
        };
        const auto arrastra = [&](int fila) {
            rotulo.clear();
            explorador.arrastrar(fila);
            explorador.arrastrar(3); // one at a time
            return QTest::qWaitFor(
                [&] { return !rotulo.isEmpty() && escena.girando() == QStringLiteral("----"); },
                20000);
        };
        const auto existen = [&] {
            return std::count_if(llevadas.begin(), llevadas.end(),
                                 [](const QUrl &url) { return QFile::exists(url.toLocalFile()); });
        };

        escena.ponMotor({"exige sésamo", "crea-entrada hola"});
        explorador.ponContrasena("sésamo");
        escena.filas.elige(0);
        escena.filas.estira(2);
        QVERIFY(arrastra(2));
        QCOMPARE(rotulo, QStringLiteral("3 elementos xxx-"));
        QCOMPARE(llevadas.size(), 2); // the folder brings what is in it
        QTRY_COMPARE(existen(), 2);
        QVERIFY(escena.claves().isEmpty());

        suelta = false; // a row that was not selected goes alone; nothing stays of it
        QVERIFY(arrastra(3));
        QCOMPARE(rotulo, QStringLiteral("c ---x"));
        QCOMPARE(escena.filas.rutasElegidas(), QStringList{"c"});
        QCOMPARE(llevadas.size(), 1);
        QTRY_COMPARE(existen(), 0);

        // Half an entry would pass for the whole.
        suelta = true;
        escena.ponMotor({"crea-entrada ho", "error Error: roto\\n", "sale 1"});
        QVERIFY(arrastra(3));
        QTRY_COMPARE(explorador.abrirFallo(), QStringLiteral("roto"));
        QVERIFY(llevadas.isEmpty());

        // Let go of while the engine is at work: it ends, and takes all with it.
        escena.ponMotor({"crea-entrada ho", "espera 60000"});
        escena.escritorio.lleva = [&](Saque &saque, const QString &dado) {
            llevadas = saque.urls();
            (void)QTest::qWaitFor([&] { return existen() == 1; }, 20000);
            rotulo = dado;
            return false;
        };
        QVERIFY(arrastra(3));
        QTRY_COMPARE(existen(), 0);
        QVERIFY(escena.claves().isEmpty());
        QVERIFY(explorador.abrirFallo().isEmpty());
    }

    // For whoever is not looking.
    void elFinalSeAvisa() {
        Escena escena("");
        Explorador &explorador = escena.explorador;
        escena.escritorio.carpeta = escena.url("sacado");
        explorador.recuperarTodo();
        QTRY_COMPARE(explorador.panel(), Panel::Recuperado);
        QCOMPARE(escena.escritorio.partes.first(), std::optional(0.0));
        QCOMPARE(escena.escritorio.partes.last(), std::nullopt);
        escena.ponMotor({"error Error: roto\\n", "sale 1"});
        explorador.volver(); // no job: nothing to tell
        explorador.recuperarTodo();
        QTRY_COMPARE(explorador.panel(), Panel::Problema);
        explorador.volver();
        QCOMPARE(escena.escritorio.avisos,
                 (QStringList{"Recuperado: De x.okz a «sacado».", "No se pudo recuperar: roto"}));
    }
};

QTEST_GUILESS_MAIN(TstExplorador)
#include "tst_explorador.moc"
