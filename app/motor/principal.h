#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

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
