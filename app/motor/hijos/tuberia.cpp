#include "tuberia.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>

namespace {

// An engine that floods its standard error is read slowly (see Proceso); the
// largest pipe that needs no privilege keeps it from waiting for us.
constexpr int kCapacidad = 1 << 20;

// A process started with a closed standard stream would get its number here,
// and the child's redirections would then overwrite each other.
bool apartaDeLosEstandar(Descriptor &descriptor) {
    if (descriptor.numero() > STDERR_FILENO)
        return true;
    Descriptor alto(::fcntl(descriptor.numero(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    descriptor = std::move(alto);
    return static_cast<bool>(descriptor);
}

} // namespace

bool Tuberia::abre() {
    int par[2];
    if (::pipe2(par, O_CLOEXEC) != 0)
        return false;
    lectura = Descriptor(par[0]);
    escritura = Descriptor(par[1]);
    if (!apartaDeLosEstandar(lectura) || !apartaDeLosEstandar(escritura))
        return false;
    // A smaller pipe only costs speed.
    (void)::fcntl(lectura.numero(), F_SETPIPE_SZ, kCapacidad);
    return ::fcntl(lectura.numero(), F_SETFL, O_NONBLOCK) == 0;
}

QByteArray leeLoQueHay(const Descriptor &lectura) {
    int hay = 0;
    if (!lectura || ::ioctl(lectura.numero(), FIONREAD, &hay) != 0 || hay <= 0)
        return {};
    QByteArray trozo(hay, Qt::Uninitialized);
    qsizetype leido = 0;
    while (leido < hay) {
        const ssize_t n =
            ::read(lectura.numero(), trozo.data() + leido, static_cast<size_t>(hay - leido));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        leido += n;
    }
    trozo.truncate(leido);
    return trozo;
}
