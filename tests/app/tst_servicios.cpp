// What other programs may ask for, and the command line that asks for it.
#include "banco.h"
#include "inicio/abierto.h"
#include "inicio/dosarranques.h"
#include "inicio/orden.h"
#include "inicio/recepcion.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

namespace {

using Que = Peticion::Que;

const QString sinArchivos = QStringLiteral("No he recibido ningún archivo.");
const QString noEsArchivo = QStringLiteral("Eso no es un archivo .okz.");

std::optional<Orden> orden(std::vector<const char *> argumentos) {
    argumentos.insert(argumentos.begin(), "orcalin-app");
    return Orden::lee(static_cast<int>(argumentos.size()), const_cast<char **>(argumentos.data()));
}

} // namespace

class TstServicios : public QObject {
    Q_OBJECT

    Abierto &abierto = Abierto::compartido();

private slots:
    void init() {
        abierto.ponArchivo(std::nullopt);
        abierto.ponAComprimir({});
    }

    void loQueSeRechaza() {
        Recepcion recepcion;
        const QSignalSpy alFrente(&recepcion, &Recepcion::alFrente);
        for (const QStringList &uris :
             {QStringList{}, QStringList{"file:///a.okz", "https://a.es/b.okz"},
              QStringList{"file:///a.okz", "/b.okz"}, QStringList{"", "file:///a.okz"},
              QStringList{"file:", "file:///a.okz"}, QStringList{"file:///a%00.okz"}}) {
            QCOMPARE(recepcion.atiende({Que::Comprimir, uris}).value_or(QString()), sinArchivos);
            QCOMPARE(recepcion.atiende({Que::Abrir, uris}).value_or(QString()), noEsArchivo);
        }
        QCOMPARE(recepcion.atiende({Que::Abrir, {"file:///a.pdf"}}).value_or(QString()),
                 noEsArchivo);
        QCOMPARE(Servicios::reparoAComprimir({}), sinArchivos);
        QCOMPARE(Servicios::reparoAAbrir({"file:///a.pdf"}), noEsArchivo);
        // Asking is not doing.
        QVERIFY(!Servicios::reparoAComprimir({"file:///a"}));
        QVERIFY(!Servicios::reparoAAbrir({"file:///a.okz"}));
        QCoreApplication::processEvents();
        QCOMPARE(alFrente.size(), 0);
        QVERIFY(!abierto.archivo());
        QVERIFY(abierto.aComprimir().isEmpty());
    }

    void comprimirLoPoneTodoComoViene() {
        abierto.ponArchivo(url("/abierto.okz"));
        QStringList pasos;
        Recepcion recepcion;
        connect(&recepcion, &Recepcion::alFrente, this,
                [&] { pasos.append(abierto.archivo() ? "al frente" : "tarde"); });
        const QStringList uris{"file:///z%20z", "file:///a.okz", "file:///z%20z"};
        QVERIFY(!recepcion.atiende({Que::Comprimir, uris}));
        QVERIFY(pasos.isEmpty()); // not before the call has returned
        QCoreApplication::processEvents();
        QCOMPARE(pasos, QStringList{"al frente"});
        QVERIFY(!abierto.archivo());
        const QList<QUrl> urls{url("/z z"), url("/a.okz"), url("/z z")};
        QCOMPARE(abierto.aComprimir(), urls);
    }

    // A service is strict; what is handed over like a command line is not.
    void seAbreElPrimerArchivo() {
        Recepcion recepcion;
        QList<QByteArray> fichas;
        connect(&recepcion, &Recepcion::alFrente, this,
                [&](const Ficha &ficha) { fichas.append(ficha.x11); });
        const QStringList uris{"file:///a.pdf", "file:///X.OKZ", "file:///b.okz"};
        const Peticion peticiones[]{
            {Que::Abrir, uris, {"f_TIME1", {}}},
            {Que::Ficheros, QStringList{"https://a.es/a.okz"} + uris, {"f_TIME2", {}}},
        };
        for (const Peticion &peticion : peticiones) {
            abierto.ponArchivo(std::nullopt);
            QVERIFY(!recepcion.atiende(peticion));
            QVERIFY(!abierto.archivo()); // not before the call has returned
            QCoreApplication::processEvents();
            QCOMPARE(abierto.archivo().value_or(QUrl()), url("/X.OKZ"));
        }
        recepcion.atiende({Que::Ficheros, {"file:///a.txt"}, {"f_TIME3", {}}});
        QCoreApplication::processEvents();
        QCOMPARE(abierto.archivo().value_or(QUrl()), url("/X.OKZ"));
        QCOMPARE(fichas, (QList<QByteArray>{"f_TIME1", "f_TIME2", "f_TIME3"}));
    }

    // Which of them is the application; -1: it goes on.
    void dosQueArrancan() {
        using Fin = DosArranques::Fin;
        struct {
            QList<Fin> fines; // of handing over, each time it is tried
            Orden::Modo modo;
            int alEmpezar;
            int despues;
            bool esNuestro;
        } const casos[]{
            {{Fin::Hecha}, Orden::Modo::Ventana, 0, -1, false},
            {{Fin::Rechazada}, Orden::Modo::Ventana, 1, -1, false},
            {{Fin::Nadie}, Orden::Modo::Ventana, -1, -1, true},
            {{Fin::NoContesta}, Orden::Modo::Ventana, -1, -1, false}, // works alone
            // The other was quicker.
            {{Fin::Nadie, Fin::Hecha}, Orden::Modo::Ventana, -1, 0, false},
            {{Fin::Nadie, Fin::Rechazada}, Orden::Modo::Ventana, -1, 1, false},
            {{Fin::Nadie, Fin::NoContesta}, Orden::Modo::Ventana, -1, -1, false},
            {{}, Orden::Modo::Espera, -1, -1, true},
            {{}, Orden::Modo::Espera, -1, 0, false},
        };
        for (const auto &caso : casos) {
            auto fines = caso.fines;
            DosArranques arranques({caso.modo, {}},
                                   [&fines](const Peticion &) { return fines.takeFirst(); });
            QCOMPARE(arranques.alEmpezar().value_or(-1), caso.alEmpezar);
            if (caso.alEmpezar < 0)
                QCOMPARE(arranques.trasPedirElNombre(caso.esNuestro).value_or(-1), caso.despues);
            QVERIFY(fines.isEmpty()); // tried as often as that
        }
    }

    void laOrden() {
        const Banco banco;
        QDir::setCurrent(QString::fromUtf8(banco.ruta("")));
        const QString aqui = QStringLiteral("file://") + QDir::currentPath() + u'/';
        const auto abrir = orden({"--servicio", "abrir", "--", "-a b%.okz", "/c\xe1", "file:///d"});
        QVERIFY(abrir && abrir->peticion.que == Que::Abrir);
        const QStringList uris{aqui + "-a%20b%25.okz", "file:///c%E1", "file:///d"};
        QCOMPARE(abrir->peticion.uris, uris);
        QCOMPARE(orden({"a.okz", ""})->peticion.uris, QStringList{aqui + "a.okz"});
        QCOMPARE(orden({})->peticion.que, Que::Activar);
        QVERIFY(orden({"--espera"})->modo == Orden::Modo::Espera);
        QVERIFY(!orden({"--servicio", "borrar", "/a"}) && !orden({"--servicio"}));
    }
};

QTEST_GUILESS_MAIN(TstServicios)
#include "tst_servicios.moc"
