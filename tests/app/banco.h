#pragma once

#include "motor/motor.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

/// What a driver test works in: a temporary folder that is TMPDIR and HOME at
/// once, and a scripted child in the place of the bundle's engine.
class Banco {
public:
    Banco();
    ~Banco();
    Banco(const Banco &) = delete;
    Banco &operator=(const Banco &) = delete;

    /// A path inside the test's folder.
    [[nodiscard]] QByteArray ruta(const QByteArray &nombre) const;
    [[nodiscard]] QUrl url(const QByteArray &nombre) const;

    /// Writes a file there and returns its URL.
    QUrl fichero(const QByteArray &nombre, const QByteArray &contenido) const;
    static QByteArray lee(const QByteArray &ruta);
    /// What the scripted child's "argumentos" wrote there, of all its runs.
    static QList<QByteArray> argumentos(const QByteArray &fichero);
    /// Makes a symbolic link there.
    void enlace(const QByteArray &a, const QByteArray &nombre) const;

    /// Puts the scripted child into the bundle's place, with this script.
    void ponMotor(const QList<QByteArray> &guion) const;
    /// Puts an arbitrary file there.
    static void ponFicheroComoMotor(const QByteArray &contenido, unsigned modo);
    static void quitaMotor();

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

    /// Runs the event loop until a job has ended; false after 20 s.
    bool esperaFinal(int finales = 1);

    /// The text of the error that was published last, or nothing.
    [[nodiscard]] QString ultimoError() const;
};

/// The path of the bundle's engine, as seen from the test's executable.
QByteArray sitioDelMotor();

/// How many entries a folder has; for /proc/self/fd and /proc/self/task.
int cuantos(const char *carpeta);
