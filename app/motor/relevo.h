#pragma once

#include <mutex>

/// The lock under which work passes from one thread to another through Qt's
/// queues. They order what was written before and what is read after, but
/// inside a library that the thread sanitizer does not see into; this says the
/// same where it does. One for all queues. Any thread.
inline std::mutex &relevo() {
    static std::mutex unico;
    return unico;
}
