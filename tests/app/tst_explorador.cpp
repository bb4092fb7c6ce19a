// The archive browser's rules, without a window.
#include "banco.h"
#include "escritoriofalso.h"
#include "motor/saque.h"
#include "pantallas/explorador.h"

#include <QAbstractItemModelTester>
#include <QFileInfo>
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

// A listing for the scripted engine, as one script line.
QByteArray lineas(std::initializer_list<const char *> todas) {
    QByteArray salida = "salida ";
    for (const char *linea : todas)
        salida += QByteArray(linea) + "\\n";
    return salida;
}

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
        filas.ponContenido(
            contenido({"cancio", "cancio\u0301n", "x\u0302", "x", "Canci\u00d3", "ba"}));
        const QAbstractItemModelTester vigilante(&filas);
        QString texto;
        for (const QChar c : QStringLiteral("cancio\u0301n")) {
            texto += c;
            filas.busca(texto);
            Filas deNuevas(escritorio);
            deNuevas.ponContenido(
                contenido({"cancio", "cancio\u0301n", "x\u0302", "x", "Canci\u00d3", "ba"}));
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
        const QStringList tramo{"b1", "c", "b2"};
        QCOMPARE(filas.rutasElegidas(), tramo);
        filas.alterna(2);
        filas.alterna(4);
        const QStringList salteadas{"b1", "b2", "d"};
        QCOMPARE(filas.rutasElegidas(), salteadas);

        filas.busca(QStringLiteral("c")); // hidden, and still selected
        QCOMPARE(filas.elegidas(), 3);
        filas.busca(QStringLiteral("b"));
        filas.eligeTodo();
        const QStringList bes{"b1", "b2"};
        QCOMPARE(filas.rutasElegidas(), bes);
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
        const auto dato = [&](int fila, int papel) {
            return filas.data(filas.index(fila), papel).toString();
        };
        QCOMPARE(dato(0, Filas::Nombre), QStringLiteral("fotos"));
        QCOMPARE(dato(0, Filas::Icono), QStringLiteral("folder"));
        QCOMPARE(dato(0, Filas::Tamano), QString());
        QCOMPARE(dato(1, Filas::Carpeta), QStringLiteral("fotos/a"));
        QCOMPARE(dato(1, Filas::Tamano), QStringLiteral("1234 b"));
        QCOMPARE(dato(1, Filas::Descripcion), QStringLiteral("b.jpg, en fotos/a, archivo, 1234 b"));
        QCOMPARE(dato(2, Filas::Icono), QStringLiteral("link"));
        QCOMPARE(dato(3, Filas::Icono), QStringLiteral("link"));
        QCOMPARE(dato(4, Filas::Icono), QStringLiteral("doc"));
        QCOMPARE(dato(4, Filas::Tamano), QString());
    }

    void cargaYCuenta() {
        const Banco banco;
        banco.ponMotor({lineas({"d0755 0 docs", "-0644 5 docs/a.txt", "-0644 7 b"})});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        QSignalSpy foco(&explorador, &Explorador::focoBusqueda);
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QCOMPARE(explorador.texto(), QStringLiteral("leyendo el archivo…"));
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        QCOMPARE(foco.size(), 1);
        QCOMPARE(explorador.cuenta(), QStringLiteral("3 elementos"));
        QCOMPARE(explorador.rotuloRecuperar(), QStringLiteral("Recuperar 0"));
        explorador.filas()->elige(1);
        QCOMPARE(explorador.rotuloRecuperar(), QStringLiteral("Recuperar este"));
        explorador.ponBusca(QStringLiteral("docs"));
        QCOMPARE(explorador.cuenta(), QStringLiteral("2 de 3"));
        explorador.ponBusca(QStringLiteral("nada"));
        QCOMPARE(explorador.cuenta(), QStringLiteral("0 de 3"));
        QVERIFY(explorador.hayElegidas());

        explorador.ponBusca(QString());
        explorador.abrir(0); // a folder: its path, and a slash whatever it ends in
        QCOMPARE(explorador.busca(), QStringLiteral("docs/"));
        QCOMPARE(explorador.cuenta(), QStringLiteral("1 de 3"));
    }

    void unArchivoVacio() {
        const Banco banco;
        banco.ponMotor({});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        QCOMPARE(explorador.cuenta(), QStringLiteral("0 elementos"));
        QVERIFY(!explorador.hayElegidas());
    }

    void laContrasena() {
        const Banco banco;
        banco.ponMotor({"error Error: contrase\xc3\xb1"
                        "a incorrecta\\n",
                        "argumentos " + banco.ruta("args"), "sale 1"});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::PedirClave);
        explorador.enviaClave(); // with nothing: lists without one, and asks again
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QTRY_COMPARE(explorador.panel(), Panel::PedirClave);
        QVERIFY(!Banco::lee(banco.ruta("args")).contains("--password-file"));
        explorador.ponContrasena(QStringLiteral("mala"));
        explorador.enviaClave();
        QTRY_COMPARE(explorador.panel(), Panel::PedirClave);
        QCOMPARE(explorador.contrasena(), QStringLiteral("mala"));
        QVERIFY(Banco::lee(banco.ruta("args")).contains("--password-file"));
        banco.ponMotor({lineas({"-0644 5 a"})});
        explorador.enviaClave();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        QVERIFY(banco.claves().isEmpty());
    }

    void unFalloAlLeerSeReintenta() {
        const Banco banco;
        banco.ponMotor({"error Error: cabecera da\xc3\xb1"
                        "ada\\n",
                        "sale 1"});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Problema);
        QCOMPARE(explorador.texto(), QStringLiteral("cabecera dañada"));
        banco.ponMotor({lineas({"-0644 5 a"})});
        explorador.reintenta();
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
    }

    void elEstadoDelMotorManda() {
        EscritorioFalso escritorio;
        Explorador explorador(QUrl(QStringLiteral("file:///x.okz")), escritorio);
        explorador.motor().ponEstado(
            Motor::Trabajando{0.5, QStringLiteral("recuperando 2 de 3…"), 9});
        QCOMPARE(explorador.panel(), Panel::Ocupado);
        QCOMPARE(explorador.texto(), QStringLiteral("recuperando 2 de 3…"));
        explorador.motor().ponEstado(Motor::Hecho{1, 1, 1, QUrl(QStringLiteral("file:///d"))});
        QCOMPARE(explorador.panel(), Panel::Recuperado);
        explorador.revela();
        QCOMPARE(escritorio.revelados, QList<QUrl>{QUrl(QStringLiteral("file:///d"))});
        explorador.motor().ponEstado(Motor::Error{QStringLiteral("lleno")});
        QCOMPARE(explorador.panel(), Panel::Problema);
        QCOMPARE(explorador.texto(), QStringLiteral("lleno"));
    }

    void recuperarPreguntaDonde() {
        const Banco banco;
        banco.ponMotor({lineas({"-0644 5 a", "-0644 5 b", "-0644 5 c"})});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        explorador.recuperarElegidas();
        QCOMPARE(escritorio.mensaje, QString()); // nothing selected, nothing asked
        explorador.recuperarTodo();
        QCOMPARE(escritorio.mensaje, QStringLiteral("¿Dónde dejo todo el contenido?"));
        QCOMPARE(explorador.panel(), Panel::Contenido); // cancelled

        banco.ponMotor({"argumentos " + banco.ruta("args")});
        escritorio.carpeta = banco.url("d");
        explorador.filas()->elige(0);
        explorador.filas()->alterna(2);
        explorador.recuperarElegidas();
        QCOMPARE(escritorio.mensaje, QStringLiteral("¿Dónde lo dejo?"));
        QTRY_COMPARE(explorador.panel(), Panel::Recuperado);
        const QByteArray args = Banco::lee(banco.ruta("args"));
        QCOMPARE(args.count("--file"), 2);
        QVERIFY(args.indexOf(QByteArray("--file\0a", 8)) <
                args.indexOf(QByteArray("--file\0c", 8)));
        explorador.volver();
        QCOMPARE(explorador.panel(), Panel::Contenido);
        QCOMPARE(explorador.filas()->elegidas(), 2);
    }

    void abrirUnaALaVez() {
        const Banco banco;
        banco.ponMotor({lineas({"-0644 5 a", "-0644 5 b"})});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        banco.ponMotor(
            {"argumentos " + banco.ruta("args"), "espera 200", "error Error: roto\\n", "sale 1"});
        explorador.abrir(0);
        explorador.abrir(1); // dropped
        const auto abriendose = [&](int fila) {
            return explorador.filas()
                ->data(explorador.filas()->index(fila), Filas::Abriendose)
                .toBool();
        };
        QVERIFY(abriendose(0) && !abriendose(1));
        QTRY_COMPARE(explorador.abrirFallo(), QStringLiteral("roto"));
        QVERIFY(!abriendose(0));
        QCOMPARE(Banco::lee(banco.ruta("args")).count("extract"), 1);
        QCOMPARE(explorador.panel(), Panel::Contenido);
        QVERIFY(escritorio.abiertos.isEmpty());
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
        const Banco banco;
        banco.ponMotor({lineas({"-0644 5 a", "d0755 0 docs", "-0644 7 docs/b", "-0644 9 c"})});
        EscritorioFalso escritorio;
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.cargar();
        QTRY_COMPARE(explorador.panel(), Panel::Contenido);
        Filas &filas = *explorador.filas();
        const auto girando = [&] {
            QString marcas;
            for (int fila = 0; fila < filas.rowCount(); ++fila)
                marcas += filas.data(filas.index(fila), Filas::Abriendose).toBool() ? u'x' : u'-';
            return marcas;
        };
        // The mouse waits for the files, and drops them or thinks better of it.
        QString rotulo;
        QList<QUrl> llevadas;
        bool suelta = true;
        escritorio.lleva = [&](Saque &saque, const QString &dado) {
            rotulo = dado + QStringLiteral(" ") + girando();
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
                [&] { return !rotulo.isEmpty() && girando() == QStringLiteral("----"); }, 20000);
        };
        const auto existen = [&] {
            return std::count_if(llevadas.begin(), llevadas.end(), [](const QUrl &url) {
                return QFileInfo::exists(url.toLocalFile());
            });
        };

        banco.ponMotor({"exige sésamo", "crea-entrada hola"});
        explorador.ponContrasena(QStringLiteral("sésamo"));
        filas.elige(0);
        filas.estira(2);
        QVERIFY(arrastra(2));
        QCOMPARE(rotulo, QStringLiteral("3 elementos xxx-"));
        QCOMPARE(llevadas.size(), 2); // the folder brings what is in it
        QTRY_COMPARE(existen(), 2);
        QVERIFY(banco.claves().isEmpty());

        suelta = false; // a row that was not selected goes alone; nothing stays of it
        QVERIFY(arrastra(3));
        QCOMPARE(rotulo, QStringLiteral("c ---x"));
        QCOMPARE(filas.rutasElegidas(), QStringList{QStringLiteral("c")});
        QCOMPARE(llevadas.size(), 1);
        QTRY_COMPARE(existen(), 0);

        // Half an entry would pass for the whole.
        suelta = true;
        banco.ponMotor({"crea-entrada ho", "error Error: roto\\n", "sale 1"});
        QVERIFY(arrastra(3));
        QTRY_COMPARE(explorador.abrirFallo(), QStringLiteral("roto"));
        QVERIFY(llevadas.isEmpty());

        // Let go of while the engine is at work: it ends, and takes all with it.
        banco.ponMotor({"crea-entrada ho", "espera 60000"});
        escritorio.lleva = [&](Saque &saque, const QString &dado) {
            llevadas = saque.urls();
            (void)QTest::qWaitFor([&] { return existen() == 1; }, 20000);
            rotulo = dado;
            return false;
        };
        QVERIFY(arrastra(3));
        QTRY_COMPARE(existen(), 0);
        QVERIFY(explorador.abrirFallo().isEmpty());
    }

    // For whoever is not looking.
    void elFinalSeAvisa() {
        const Banco banco;
        banco.ponMotor({});
        EscritorioFalso escritorio;
        escritorio.carpeta = banco.url("sacado");
        Explorador explorador(banco.url("x.okz"), escritorio);
        explorador.recuperarTodo();
        QTRY_COMPARE(escritorio.avisos.size(), 1);
        QCOMPARE(escritorio.avisos[0], QStringLiteral("Recuperado: De x.okz a «sacado»."));
        QCOMPARE(escritorio.partes.first(), std::optional(0.0));
        QCOMPARE(escritorio.partes.last(), std::nullopt);
        banco.ponMotor({"error Error: roto\\n", "sale 1"});
        explorador.volver();
        explorador.recuperarTodo();
        QTRY_COMPARE(escritorio.avisos.size(), 2);
        QCOMPARE(escritorio.avisos[1], QStringLiteral("No se pudo recuperar: roto"));
        explorador.volver(); // no job: nothing to tell
        QCOMPARE(escritorio.avisos.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TstExplorador)
#include "tst_explorador.moc"
