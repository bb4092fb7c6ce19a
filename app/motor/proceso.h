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
/// A launched child is followed by one thread of its own until it ends, and the
/// thread keeps what it needs alive: destroying the Proceso neither ends the
/// child nor waits for it. The members are called on one thread.
class Proceso {
public:
    struct Orden {
        QByteArray ejecutable;
        QList<QByteArray> argumentos; ///< without the program's own name
    };

    struct Final {
        int estado = 0;   ///< exit status; 128 + the signal's number when one ended it
        QByteArray error; ///< what standard error still held, not given to the reader
    };

    /// Takes one chunk of standard error, never empty, in order, on the child's
    /// thread. A chunk is whatever the pipe held; it may end inside a line.
    ///
    /// Words that the child wrote just before its end are left to Final: once
    /// there is something to read, the child gets 40 ms to end first.
    using Lector = std::function<void(const QByteArray &trozo)>;

    /// Called once, on the child's thread, after the last call of the reader.
    using AlTerminar = std::function<void(const Final &)>;

    explicit Proceso(Orden orden);
    ~Proceso();
    Proceso(const Proceso &) = delete;
    Proceso &operator=(const Proceso &) = delete;

    /// Starts the child; call it once. Returns 0, or the errno value that says
    /// why nothing was started; then neither function is ever called.
    [[nodiscard]] int lanza(Lector lector, AlTerminar alTerminar);

    /// Asks the child to end (SIGTERM). Nothing happens before the launch or
    /// after the end.
    void termina();

    /// Asks every child of this process to end, waits up to `gracia` for their
    /// ends to be handled, then kills what is left and waits for that. For the
    /// end of the application: without it, password files would stay behind.
    static void terminaTodos(std::chrono::milliseconds gracia);

private:
    class Hijo;
    Orden m_orden;
    std::shared_ptr<Hijo> m_hijo;
};
