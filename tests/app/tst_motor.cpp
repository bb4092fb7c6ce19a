// What all jobs share: the locator, the state, the password file, sizes.
#include "banco.h"
#include "motor/clave.h"
#include "motor/ruta.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TstMotor : public QObject {
    Q_OBJECT

private slots:
    void elMotorSeBuscaCadaVez() {
        const Banco banco;
        if (QFileInfo::exists(QStringLiteral("/usr/local/bin/orcalin")))
            QSKIP("hay un motor en /usr/local/bin");
        QVERIFY(!Motor::binario());

        QDir(banco.url("").toLocalFile()).mkdir(QStringLiteral("bin"));
        banco.fichero("bin/orcalin", "");
        QVERIFY(!Motor::binario()); // there, but not executable
        ::chmod(banco.ruta("bin/orcalin").constData(), 0755);
        QCOMPARE(Motor::binario(), ruta::url(banco.ruta("bin/orcalin")));

        Banco::ponFicheroComoMotor("", 0644);
        QCOMPARE(Motor::binario(), ruta::url(banco.ruta("bin/orcalin")));
        ::chmod(sitioDelMotor().constData(), 0755);
        QCOMPARE(Motor::binario(), ruta::url(sitioDelMotor()));

        Banco::quitaMotor();
        qputenv("HOME", banco.ruta("")); // ends in a slash, tested as it is
        QCOMPARE(Motor::binario(), ruta::url(banco.ruta("") + "/bin/orcalin"));
    }

    void losEstadosSeComparanPorCasoYValores() {
        using M = Motor;
        const M::Estado a = M::Trabajando{0.5, QStringLiteral("x"), 3.0};
        QVERIFY(a == M::Estado(M::Trabajando{0.5, QStringLiteral("x"), 3.0}));
        QVERIFY(a != M::Estado(M::Trabajando{0.5, QStringLiteral("x"), std::nullopt}));
        QVERIFY(M::Estado(M::Error{QString()}) != M::Estado(M::Reposo{}));
        QVERIFY(M::Estado(M::Hecho{1, 2, 3, QUrl()}) != M::Estado(M::Hecho{1, 2, 4, QUrl()}));
    }

    void cancelarSinHijoPublicaReposo() {
        Motor motor;
        QVERIFY(motor.estado() == Motor::Estado(Motor::Reposo{}));
        Testigo testigo(motor);
        motor.cancelar();
        motor.ponEstado(Motor::Reposo{});
        QCOMPARE(testigo.vistos.size(), 2); // equal states notify as well
    }

    void laClaveEsSoloDelDueno() {
        const Banco banco;
        const mode_t antes = ::umask(0);
        const QByteArray ruta = clave::escribe(QStringLiteral("contraseña\n"));
        ::umask(antes);
        struct stat dato {};
        QCOMPARE(::stat(ruta.constData(), &dato), 0);
        QCOMPARE(dato.st_mode & 07777, 0600u);
        QCOMPARE(Banco::lee(ruta), "contrase\xc3\xb1"
                                   "a\n");
        static const QRegularExpression forma(QRegularExpression::anchoredPattern(
            QStringLiteral("okz-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}")));
        QCOMPARE(banco.claves().size(), 1);
        QVERIFY(forma.match(banco.claves().first()).hasMatch());
        clave::quita(ruta);
        QVERIFY(banco.claves().isEmpty());
    }

    void unaClaveQueNoSePuedeEscribirNoDejaNada() {
        const Banco banco;
        qputenv("TMPDIR", banco.ruta("no-existe"));
        const QByteArray ruta = clave::escribe(QStringLiteral("x"));
        QVERIFY2(ruta.startsWith(banco.ruta("no-existe/okz-")), ruta.constData());
        QVERIFY(!QFileInfo::exists(QString::fromUtf8(ruta)));
    }

    void tamanos() {
        const Banco banco;
        QCOMPARE(Motor::tamano(banco.fichero("cinco", "12345")), 5);
        const QDir raiz(banco.url("").toLocalFile());
        QVERIFY(raiz.mkpath(QStringLiteral("carpeta/vacia")) &&
                raiz.mkpath(QStringLiteral("nada")));
        banco.fichero("carpeta/.oculto", "12345");
        QCOMPARE(Motor::tamano(banco.url("carpeta")), 5);
        QCOMPARE(Motor::tamano(banco.url("carpeta/")), 5);
        QCOMPARE(Motor::tamano(banco.url("nada")), 0);
        QCOMPARE(Motor::tamano(banco.url("no-existe")), 0);

        // Links add nothing; each name of a file counts; any name is read.
        banco.enlace("/usr", "carpeta/enlace");
        QCOMPARE(::link(banco.ruta("cinco").constData(), banco.ruta("carpeta/otro").constData()),
                 0);
        ::mkfifo(banco.ruta("carpeta/cola").constData(), 0600);
        banco.fichero("carpeta/vacia/\xff\n", "123");
        QCOMPARE(Motor::tamano(banco.url("carpeta")), 13);
        banco.enlace("carpeta", "suelto");
        QCOMPARE(Motor::tamano(banco.url("suelto")), 7); // its own, not the folder's
    }

    void limpiaSoloLoPropio() {
        const Banco banco;
        const QDir raiz(banco.url("").toLocalFile());
        Motor::limpiaTemporales(); // nothing there
        QVERIFY(raiz.mkpath(QStringLiteral("orcalin-ver/UUID/solo-lectura")));
        banco.fichero("orcalin-ver/UUID/solo-lectura/copia", "x");
        ::chmod(banco.ruta("orcalin-ver/UUID/solo-lectura/copia").constData(), 0444);
        ::chmod(banco.ruta("orcalin-ver/UUID/solo-lectura").constData(), 0500);
        Motor::limpiaTemporales();
        QVERIFY(!raiz.exists(QStringLiteral("orcalin-ver")));

        QVERIFY(raiz.mkpath(QStringLiteral("ajena")));
        banco.fichero("ajena/importante", "x");
        banco.enlace("ajena", "orcalin-ver");
        Motor::limpiaTemporales();
        QVERIFY(raiz.exists(QStringLiteral("ajena/importante")));
    }
};

QTEST_GUILESS_MAIN(TstMotor)
#include "tst_motor.moc"
