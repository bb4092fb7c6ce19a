#pragma once

#include "sistema/descriptor.h"
#include "tuberia.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <functional>
#include <mutex>

/// One run of a program as a child process.
///
/// Standard error and standard output each get a pipe of their own, standard
/// input is inherited, no other descriptor is. Arguments are bytes: names that
/// are not valid UTF-8 arrive whole. (QProcess takes text for them, and that of
/// Qt 6.4 can neither close descriptors nor reset signals.)
///
/// Whoever starts it follows it, on that thread or on another: `arranca`, then
/// `sigue`; only `termina` may come from elsewhere meanwhile. Destroying a child
/// that runs and is not followed kills it.
///
/// Reading a stream "to its end" ends when nobody has it open any more, or when
/// the child has ended and what it left there is read: a grandchild that keeps
/// the pipe open holds nothing up, and what it says later is lost.
class Proceso {
public:
    struct Orden {
        QByteArray ejecutable;
        QList<QByteArray> argumentos; ///< without the program's own name
    };

    struct Final {
        int estado = 0;     ///< exit status; 128 + the signal's number when one ended it
        QByteArray salida;  ///< all of standard output, if it was read
        QByteArray error;   ///< standard error, up to 64 MiB; with a reader its last words
        bool sobra = false; ///< standard output was more than allowed: the child was asked to end
    };

    /// Takes one chunk of standard error, never empty, in order, on the thread
    /// that follows. A chunk is whatever the pipe held; it may end inside a line.
    ///
    /// What the child wrote just before its end is in Final: all that the reader
    /// never got, and the last chunk that it got if the end came within a second
    /// of it. Chunks come 40 ms late, so that what is said together stays so; one
    /// with a line that begins with «Error» waits a second for the end.
    using Lector = std::function<void(const QByteArray &trozo)>;

    explicit Proceso(Orden orden);
    ~Proceso();
    Proceso(const Proceso &) = delete;
    Proceso &operator=(const Proceso &) = delete;

    /// Starts the child; call it once. 0, or the errno value that says why
    /// nothing was started.
    [[nodiscard]] int arranca();

    /// Follows a child that was started until it has ended, and collects it.
    /// Reads standard output to its end, if `maximo` allows any bytes of it, then
    /// standard error. So a child that fills standard error before it closes
    /// standard output waits for ever, or until somebody ends it, and so does one
    /// whose standard output is not read and that writes more there than a pipe
    /// holds (1 MiB). Blocks.
    Final sigue(qsizetype maximo, const Lector &lector = {});

    /// Asks the child to end (SIGTERM), also one that has been stopped. Nothing
    /// happens before the start or after the end. Any thread.
    void termina();

    /// Asks every child of this process to end, waits up to `gracia` for them to
    /// be gone, then kills what is left and waits for that. A child started later
    /// is killed at once, so that a job of many runs ends as well. Whoever
    /// follows them is to be waited for by other means. For the end of the
    /// application: without it, password files would stay behind.
    static void terminaTodos(std::chrono::milliseconds gracia);
    /// Whether that has been asked for. Any thread.
    static bool seVanTodos();

private:
    class Vivos;

    [[nodiscard]] bool acabaAntesDe(std::chrono::milliseconds plazo) const;
    [[nodiscard]] QByteArray reparteError(const Lector &lector);
    [[nodiscard]] QByteArray leeHastaElFin(const Tuberia &tuberia, qsizetype maximo,
                                           const std::function<void()> &siSobra) const;
    int recoge();
    void senala(int numero);

    const Orden m_orden;
    std::mutex m_cerrojo; // the pidfd, between `senala` and the end
    Descriptor m_pidfd;
    Tuberia m_error;
    Tuberia m_salida;
};
