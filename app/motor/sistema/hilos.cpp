#include "hilos.h"

#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr size_t kHilos = 64;

} // namespace

ColaDeFondo &colaDeFondo() {
    static auto *unica = new ColaDeFondo;
    return *unica;
}

// With the lock held, which is why a new thread counts before it runs.
bool ColaDeFondo::hayQuienLoHaga() {
    if (m_hilos == kHilos)
        return true;
    try {
        std::thread([this] { agota(); }).detach();
        ++m_hilos;
    } catch (const std::system_error &) {
        return m_hilos > 0;
    }
    return true;
}

void ColaDeFondo::mete(std::function<void()> trabajo) {
    if (!acepta(trabajo))
        trabajo();
}

bool ColaDeFondo::intenta(std::function<void()> trabajo) {
    return acepta(trabajo);
}

// Taken over whole: the caller keeps nothing of what it holds, which may be long
// in going.
bool ColaDeFondo::acepta(std::function<void()> &trabajo) {
    const std::lock_guard guardia(m_cerrojo);
    const bool hay = hayQuienLoHaga();
    if (hay)
        m_trabajos.push_back(std::move(trabajo));
    return hay;
}

void ColaDeFondo::agota() {
    std::unique_lock guardia(m_cerrojo);
    while (!m_trabajos.empty()) {
        auto trabajo = std::move(m_trabajos.front());
        m_trabajos.pop_front();
        guardia.unlock();
        trabajo();
        trabajo = nullptr; // what it holds goes before the queue counts as empty
        guardia.lock();
    }
    if (--m_hilos == 0)
        m_vacia.notify_all();
}

void ColaDeFondo::waitForDone() {
    std::unique_lock guardia(m_cerrojo);
    m_vacia.wait(guardia, [this] { return m_hilos == 0; });
}
