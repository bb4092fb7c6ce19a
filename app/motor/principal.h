#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <mutex>
#include <utility>

/// The event queue orders what was written before a post and what is read when
/// it runs, but inside a library that the thread sanitizer does not see into.
/// This lock says the same where it does; one for all posts, for it stands for
/// the one queue.
inline std::mutex &relevo() {
    static std::mutex unico;
    return unico;
}

/// Runs `hacer` on the main thread, later, in the order of the calls. Any
/// thread. It must look at QPointers only when it runs. Dropped when the
/// application ends first.
template<typename Hacer>
void enPrincipal(Hacer hacer) {
    const std::lock_guard guardia(relevo());
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [hacer = std::move(hacer)]() mutable {
            { const std::lock_guard tras(relevo()); }
            hacer();
        },
        Qt::QueuedConnection);
}
