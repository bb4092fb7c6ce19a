#pragma once

#include "motor/motor.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

using Guion = QList<QByteArray>;

/// What a driver test works in: a temporary folder that is TMPDIR and HOME at
/// once, and a scripted child in the place of the bundle's engine. Files are
/// named as seen from that folder, by this and by the scripts.
class Banco {
public:
    Banco(); ///< without an engine
    explicit Banco(const Guion &guion);
    ~Banco();
    Banco(const Banco &) = delete;
    Banco &operator=(const Banco &) = delete;

    [[nodiscard]] QByteArray ruta(const QByteArray &nombre) const;
    [[nodiscard]] QUrl url(const QByteArray &nombre) const;
    [[nodiscard]] bool hay(const QByteArray &nombre) const;

    /// Writes a file, with the folders that lead to it, and returns its URL.
    QUrl fichero(const QByteArray &nombre, const QByteArray &contenido) const;
    [[nodiscard]] QByteArray lee(const QByteArray &nombre) const;
    void enlace(const QByteArray &a, const QByteArray &nombre) const;

    /// Puts the scripted child into the bundle's place, with this script.
    void ponMotor(const Guion &guion) const;
    /// Puts an arbitrary file there: without a text what cannot be started.
    static void ponFicheroComoMotor(const QByteArray &contenido = "esto no es un programa",
                                    unsigned modo = 0755);
    static void quitaMotor();

    /// What the scripted child's "argumentos args" wrote, of all its runs.
    [[nodiscard]] QList<QByteArray> argumentos() const;
    /// The same with "|" between them, "~" for the folder and "*" for a UUID.
    [[nodiscard]] QByteArray ordenes() const;
    /// The password files that lie in the temporary folder.
    [[nodiscard]] QStringList claves() const;

private:
    QTemporaryDir m_carpeta;
    QByteArray m_tmpdir;
    QByteArray m_home;
};

/// Every state that a Motor publishes, in order.
class Testigo : public QObject {
public:
    explicit Testigo(Motor &motor);

    QList<Motor::Estado> vistos;

    /// The same for reading: "33 % recuperando 2 de 3…" (with " ~" behind it
    /// when there is an estimate), "hecho 1000 333 URL", "error TEXTO", "reposo".
    [[nodiscard]] QStringList dichos() const;

    /// Runs the event loop until a job has ended; false after 20 s.
    bool esperaFinal(int finales = 1);
};

/// A bench with a driver on it.
struct Taller : Banco {
    using Banco::Banco;
    Motor motor;
    Testigo testigo{motor};
};

/// The path of the bundle's engine, as seen from the test's executable.
QByteArray sitioDelMotor();

/// The file URL of a path.
QUrl url(const char *ruta);
