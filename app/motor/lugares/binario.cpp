#include "binario.h"

#include "ruta.h"

#include <QCoreApplication>
#include <QFile>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

bool esEjecutable(const QByteArray &ruta) {
    struct stat dato {};
    return ::stat(ruta.constData(), &dato) == 0 && S_ISREG(dato.st_mode) &&
           ::access(ruta.constData(), X_OK) == 0;
}

QByteArray inicioDelUsuario() {
    if (QByteArray entorno = qgetenv("HOME"); !entorno.isEmpty())
        return entorno;
    passwd registro{};
    passwd *encontrado = nullptr;
    std::vector<char> textos(16384);
    ::getpwuid_r(::getuid(), &registro, textos.data(), textos.size(), &encontrado);
    return encontrado != nullptr ? QByteArray(encontrado->pw_dir) : QByteArray();
}

} // namespace

std::optional<QUrl> buscaBinario() {
    // These places in this order are meant, also those that other systems have.
    const QByteArray candidatos[] = {
        QFile::encodeName(QCoreApplication::applicationDirPath()) + "/" ORCALIN_MOTOR,
        "/usr/local/bin/orcalin",
        "/opt/homebrew/bin/orcalin",
        inicioDelUsuario() + "/bin/orcalin",
    };
    for (const QByteArray &candidato : candidatos) {
        if (esEjecutable(candidato))
            return ruta::url(candidato);
    }
    return std::nullopt;
}
