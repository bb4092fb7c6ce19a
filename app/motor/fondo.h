#pragma once

#include "relevo.h"

#include <QRunnable>
#include <QThreadPool>

#include <utility>

/// Where blocking work goes that the user waits for. Large enough that jobs
/// which wait for a child or a slow disk do not wait for each other. Any
/// thread. Before the application ends it must have run dry (`waitForDone`).
QThreadPool &colaDeFondo();

/// Work on its way to that pool. A class of its own, for the pool's own wrapper
/// reads what it was given before anything of ours runs.
template<typename Hacer>
class Tarea : public QRunnable {
public:
    explicit Tarea(Hacer hacer)
        : m_hacer(std::move(hacer)) {}
    void run() override {
        { const std::lock_guard tras(relevo()); }
        m_hacer();
    }

private:
    Hacer m_hacer;
};

/// Runs `hacer` there. Any thread.
template<typename Hacer>
void enFondo(Hacer hacer) {
    const std::lock_guard guardia(relevo());
    colaDeFondo().start(new Tarea(std::move(hacer))); // the pool deletes it
}
