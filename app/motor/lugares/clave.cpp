#include "clave.h"

#include "ruta.h"
#include "sistema/descriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

namespace {

bool vuelca(const Descriptor &fichero, const QByteArray &datos) {
    qsizetype escrito = 0;
    while (escrito < datos.size()) {
        const ssize_t n = ::write(fichero.numero(), datos.constData() + escrito,
                                  static_cast<size_t>(datos.size() - escrito));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        escrito += n;
    }
    return true;
}

} // namespace

FicheroDeClave::FicheroDeClave(const std::optional<QString> &contrasena) {
    if (!contrasena || contrasena->isEmpty())
        return;
    m_ruta = ruta::temporal() + "/okz-" + ruta::nombreUnico();
    // A side file moved into place: whoever sees the name sees the whole password.
    const QByteArray aparte = m_ruta + ".parte";
    const Descriptor fichero(
        ::open(aparte.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!fichero)
        return;
    QByteArray datos = contrasena->toUtf8();
    const bool entero = vuelca(fichero, datos);
    explicit_bzero(datos.data(), static_cast<size_t>(datos.size()));
    if (!entero || std::rename(aparte.constData(), m_ruta.constData()) != 0)
        ::unlink(aparte.constData());
}

FicheroDeClave::~FicheroDeClave() {
    if (!m_ruta.isEmpty())
        ::unlink(m_ruta.constData());
}
