#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>
#include <functional>
#include <memory>

/// One run of a program as a child process.
///
/// Standard error and standard output each get a pipe of their own, standard
/// input is inherited, no other descriptor is. Arguments are bytes: names that
/// are not valid UTF-8 arrive whole.
///
/// There are two ways to run one. `lanza` returns at once: the child is followed
/// by one thread of its own until it ends, and the thread keeps what it needs
/// alive: destroying the Proceso neither ends the child nor waits for it. The
/// members are called on one thread. `corre` follows the child on the calling
/// thread and returns when it has ended.
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
        int estado = 0;   ///< exit status; 128 + the signal's number when one ended it
        QByteArray error; ///< its last words on standard error
    };

    /// Which streams `corre` reads. A stream that is not read takes as much as
    /// a pipe holds (1 MiB); a child that writes more there waits for ever.
    enum class Lee { Error, SalidaYError };

    /// A run that was waited for.
    struct Corrida {
        int fallo = 0;     ///< errno value that says why nothing was started, or 0
        int estado = 0;    ///< as in Final
        QByteArray salida; ///< all of standard output, if it was read
        QByteArray error;  ///< all of standard error
    };

    /// Takes one chunk of standard error, never empty, in order, on the child's
    /// thread. A chunk is whatever the pipe held; it may end inside a line.
    ///
    /// What the child wrote just before its end is in Final: all that the reader
    /// never got, and the last chunk that it got if the end came within a second
    /// of it. Chunks come 40 ms late, so that what is said together stays so; one
    /// with a line that begins with «Error» waits a second for the end.
    using Lector = std::function<void(const QByteArray &trozo)>;

    /// Called once, on the child's thread, after the last call of the reader.
    using AlTerminar = std::function<void(const Final &)>;

    explicit Proceso(Orden orden);
    ~Proceso();
    Proceso(const Proceso &) = delete;
    Proceso &operator=(const Proceso &) = delete;

    /// Starts the child; call it once. Returns 0, or the errno value that says
    /// why nothing was started; then neither function is ever called. Without a
    /// reader (an empty function) all of standard error is in Final, read to its
    /// end as it comes.
    [[nodiscard]] int lanza(Lector lector, AlTerminar alTerminar);

    /// Runs a child to its end: reads standard output to its end, if it is to be
    /// read, then standard error, one after the other, then waits for the exit.
    /// So a child that fills standard error before it closes standard output
    /// waits for ever, or until `terminaTodos`. Blocks; any thread.
    [[nodiscard]] static Corrida corre(const Orden &orden, Lee que);

    /// Asks the child to end (SIGTERM), also one that has been stopped. Nothing
    /// happens before the launch or after the end.
    void termina();

    /// Asks every child of this process to end, waits up to `gracia` for their
    /// ends to be handled, then kills what is left and waits for that. A child
    /// started later is killed at once, so that a job of many runs ends as well;
    /// whoever called `corre` is to be waited for by other means. For the end of
    /// the application: without it, password files would stay behind.
    static void terminaTodos(std::chrono::milliseconds gracia);

private:
    class Hijo;
    Orden m_orden;
    std::shared_ptr<Hijo> m_hijo;
};
