#pragma once

#include "relevo.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

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
