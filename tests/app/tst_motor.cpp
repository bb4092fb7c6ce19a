// What all jobs share: the locator, the state, the password file, sizes.
#include "banco.h"
#include "lugares/clave.h"
#include "lugares/ruta.h"
#include "sistema/hilos.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TstMotor : public QObject {
    Q_OBJECT

private slots:
    void elMotorSeBuscaCadaVez() {
        const Banco banco;
        if (::access("/usr/local/bin/orcalin", F_OK) == 0)
            QSKIP("hay un motor en /usr/local/bin");
        QVERIFY(!Motor::binario());

        const QUrl deCasa = banco.fichero("bin/orcalin", "");
        QVERIFY(!Motor::binario()); // there, but not executable
        ::chmod(banco.ruta("bin/orcalin").constData(), 0755);
        QCOMPARE(Motor::binario(), deCasa);

        Banco::ponFicheroComoMotor("", 0644);
        QCOMPARE(Motor::binario(), deCasa);
        ::chmod(sitioDelMotor().constData(), 0755);
        QCOMPARE(Motor::binario(), ruta::url(sitioDelMotor()));

        Banco::quitaMotor();
        qputenv("HOME", banco.ruta("")); // ends in a slash, tested as it is
        QCOMPARE(Motor::binario(), ruta::url(banco.ruta("") + "/bin/orcalin"));
    }

    void laClaveEsSoloDelDueno() {
        const Banco banco;
        const mode_t antes = ::umask(0);
        std::optional<FicheroDeClave> clave(std::in_place, QStringLiteral("contraseña\n"));
        ::umask(antes);
        const QByteArray ruta = clave->ruta();
        struct stat dato {};
        QCOMPARE(::stat(ruta.constData(), &dato), 0);
        QCOMPARE(dato.st_mode & 07777, 0600u);
        QVERIFY(ruta.startsWith(banco.ruta("okz-")));
        QCOMPARE(banco.claves().size(), 1);
        QCOMPARE(banco.lee(banco.claves().constFirst().toUtf8()), "contraseña\n");
        clave.reset();
        QVERIFY(banco.claves().isEmpty());

        // Where nothing can be written, the engine is to miss it, not to do without.
        qputenv("TMPDIR", banco.ruta("no-existe"));
        QVERIFY(
            FicheroDeClave(QStringLiteral("x")).ruta().startsWith(banco.ruta("no-existe/okz-")));
    }

    void tamanos() {
        const Banco banco;
        QCOMPARE(Motor::tamano(banco.fichero("cinco", "12345")), 5);
        QCOMPARE(Motor::tamano(banco.url("no-existe")), 0);

        // Links add nothing; each name of a file counts; any name is read.
        banco.fichero("carpeta/.oculto", "12345");
        banco.enlace("/usr", "carpeta/enlace");
        QCOMPARE(::link(banco.ruta("cinco").constData(), banco.ruta("carpeta/otro").constData()),
                 0);
        ::mkfifo(banco.ruta("carpeta/cola").constData(), 0600);
        banco.fichero("carpeta/otra/\xff\n", "123");
        QCOMPARE(Motor::tamano(banco.url("carpeta/")), 13);
        banco.enlace("carpeta", "suelto");
        QCOMPARE(Motor::tamano(banco.url("suelto")), 7); // its own, not the folder's
    }

    void limpiaSoloLoPropio() {
        const Banco banco;
        Motor::limpiaTemporales(); // nothing there
        banco.fichero("orcalin-ver/UUID/solo-lectura/copia", "x");
        ::chmod(banco.ruta("orcalin-ver/UUID/solo-lectura/copia").constData(), 0444);
        ::chmod(banco.ruta("orcalin-ver/UUID/solo-lectura").constData(), 0500);
        banco.fichero("orcalin-ver-9B1DE3D4-0C5A-4A52-9E2C-2F1D6B7A8C90/de-antes", "x");
        banco.fichero("orcalin-ver-mío", "x");
        Motor::limpiaTemporales();
        QVERIFY(!banco.hay("orcalin-ver"));
        colaDeFondo().waitForDone();
        const QDir temporal(QString::fromUtf8(banco.ruta("")), "orcalin-ver*");
        QCOMPARE(temporal.entryList(), QStringList("orcalin-ver-mío"));

        banco.fichero("ajena/suya/importante", "x");
        ::chmod(banco.ruta("ajena/suya").constData(), 0500);
        banco.enlace("ajena", "orcalin-ver");
        Motor::limpiaTemporales();
        QVERIFY(banco.hay("ajena/suya/importante"));
        struct stat dato {};
        QCOMPARE(::stat(banco.ruta("ajena/suya").constData(), &dato), 0);
        QCOMPARE(dato.st_mode & 07777, 0500u);
    }
};

QTEST_GUILESS_MAIN(TstMotor)
#include "tst_motor.moc"
