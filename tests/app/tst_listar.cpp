// The listing job: command line, failures, engines that misbehave.
#include "banco.h"

#include <QTest>

namespace {

const auto kNada = QStringLiteral("No se puede leer este archivo.");
const auto kPide = QStringLiteral("(pide la contraseña)");

// What a listing gave: its paths, or the failure.
QStringList dicho(const Motor::Listado &listado) {
    QStringList rutas;
    if (const auto *fallo = std::get_if<FalloAlLeer>(&listado)) {
        const auto *otro = std::get_if<fallos::Otro>(fallo);
        return {otro != nullptr ? otro->texto : kPide};
    }
    for (const Entrada &entrada : std::get<QList<Entrada>>(listado))
        rutas.append(entrada.ruta);
    return rutas;
}

QStringList lista(const Banco &banco, const std::optional<QString> &clave = "x") {
    return dicho(Motor::listar(banco.url("-x\n\xff.okz"), clave));
}

} // namespace

class TstListar : public QObject {
    Q_OBJECT

private slots:
    void unListado() {
        const Banco banco({"argumentos args", "clave clave", "salida d0755 0 b\\r\\n-0644 5 b/ñ\\n",
                           "error Error: contraseña, solo un aviso\\n", "salida -0644 1 a"});
        QCOMPARE(lista(banco, "sésamo \n"), (QStringList{"b", "b/ñ", "a"}));
        const QByteArray conClave = "list|~/-x\n\xff.okz|--password-file|~/okz-*";
        QCOMPARE(banco.ordenes(), conClave);
        QCOMPARE(banco.lee("clave"), "600 sésamo \n");
        QVERIFY(banco.claves().isEmpty());

        banco.ponMotor({"argumentos args"});
        QCOMPARE(lista(banco, std::nullopt), QStringList());
        QCOMPARE(lista(banco, QString()), QStringList());
        QCOMPARE(banco.ordenes(), conClave + "|list|~/-x\n\xff.okz|list|~/-x\n\xff.okz");
    }

    void porQueNoSeLee() {
        const std::pair<const char *, QString> casos[]{
            {"Error: falta la contraseña\\n", kPide},
            {"Error: uno\\nError: wrong password\\n", kPide},
            {"Password required\\n", kNada},
            {"aviso: error\\nError: cabecera dañada\\nError: otro\\n", "cabecera dañada"},
            {"IOError at 12", "IOError at 12"},
            {"Error: a: Error: b\\r\\n", "a: b"},
            {"", kNada},
            {"Error: password \\xff\\n", kNada},
            {"\nsenal 9", kNada},
            {"\ncierra\nespera 100", kNada},
        };
        for (const auto &[palabras, texto] : casos) {
            const Banco banco({"salida -0644 1 a\\n", QByteArray("error ") + palabras, "sale 1"});
            QCOMPARE(lista(banco), QStringList{texto});
            QVERIFY(banco.claves().isEmpty());
        }
    }

    void sinMotor() {
        const Banco banco;
        QCOMPARE(lista(banco), QStringList{"No encuentro el motor."});
        QVERIFY(banco.claves().isEmpty());
        Banco::ponFicheroComoMotor();
        QCOMPARE(lista(banco), QStringList{"No pude arrancar el motor."});
        QCOMPARE(banco.claves().size(), 1); // stays when nothing was started
    }

    // As much as a pipe holds may be said before the listing is complete.
    void unMotorQueSeQuejaMucho() {
        const Banco banco({"salida -0644 1 a\\n", "inunda 1000000", "salida -0644 1 b\\n"});
        QCOMPARE(lista(banco), (QStringList{"a", "b"}));
        banco.ponMotor({"inunda 1000000", "error \\nError: harto\\n", "sale 1"});
        QCOMPARE(lista(banco), QStringList{"harto"});
    }
};

QTEST_GUILESS_MAIN(TstListar)
#include "tst_listar.moc"
