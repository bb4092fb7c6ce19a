#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

/// Threads for blocking work that the user waits for: so many that jobs which
/// wait for a child or a slow disk do not wait for each other. A thread ends
/// when nothing is left to do. The members are called on any thread.
///
/// QThreadPool would not do: where the system has no thread to give, it keeps
/// the work for ever, and waits for ever for it to be done.
class ColaDeFondo {
public:
    /// Runs `trabajo`, later, on one of the threads. When the system has no
    /// thread to give and none is running, at once on this one.
    void mete(std::function<void()> trabajo);

    /// The same, but then never on this one: returns whether somebody is there
    /// to do it, else nothing happens.
    [[nodiscard]] bool intenta(std::function<void()> trabajo);

    /// Waits until there is nothing left to do. Before the application ends.
    void waitForDone();

private:
    bool acepta(std::function<void()> &trabajo);
    void agota();
    [[nodiscard]] bool hayQuienLoHaga();

    std::mutex m_cerrojo;
    std::condition_variable m_vacia;
    std::deque<std::function<void()>> m_trabajos;
    size_t m_hilos = 0;
};

/// The one of this process; never destroyed.
ColaDeFondo &colaDeFondo();

/// Runs `hacer` there. Any thread.
inline void enFondo(std::function<void()> hacer) {
    colaDeFondo().mete(std::move(hacer));
}

/// The event queue orders what was written before a post and what is read when
/// it runs, but inside a library that the thread sanitizer does not see into.
/// In its build these two say the same where it does.
namespace relevo {

#ifdef __SANITIZE_THREAD__
inline char testigo; // one for all posts, for it stands for the one queue
inline void da() {
    __tsan_release(&testigo);
}
inline void toma() {
    __tsan_acquire(&testigo);
}
#else
inline void da() {}
inline void toma() {}
#endif

} // namespace relevo

/// Runs `hacer` on the main thread, later, in the order of the calls. Any
/// thread. It must look at QPointers only when it runs. Dropped when the
/// application ends first.
template<typename Hacer>
void enPrincipal(Hacer hacer) {
    relevo::da();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [hacer = std::move(hacer)]() mutable {
            relevo::toma();
            hacer();
        },
        Qt::QueuedConnection);
}
