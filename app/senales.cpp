#include "senales.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int aviso[2]; // a handler may do little more than write a byte

void avisa(int) {
    const char byte = 0;
    [[maybe_unused]] const ssize_t escrito = ::write(aviso[1], &byte, 1);
}

} // namespace

void salEnOrden() {
    if (::pipe2(aviso, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *oyente =
        new QSocketNotifier(aviso[0], QSocketNotifier::Read, QCoreApplication::instance());
    // Not quit(), which asks the windows first, and they may ask the user.
    QObject::connect(oyente, &QSocketNotifier::activated, oyente, [] { QCoreApplication::exit(); });
    struct sigaction accion {};
    accion.sa_handler = avisa;
    accion.sa_flags = SA_RESTART;
    for (const int senal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(senal, &accion, nullptr);
}
