#include "orden.h"

#include "lugares/ruta.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

QString uriDe(const QByteArray &argumento, const QByteArray &aqui) {
    if (argumento.startsWith("file:"))
        return QString::fromUtf8(argumento);
    const QUrl url = ruta::url(argumento.startsWith('/') ? argumento : aqui + '/' + argumento);
    return url.toString(QUrl::FullyEncoded);
}

QStringList urisDe(QByteArrayList argumentos) {
    const QByteArray aqui = QFile::encodeName(QDir::currentPath());
    if (!argumentos.isEmpty() && argumentos.first() == "--")
        argumentos.removeFirst();
    QStringList uris;
    for (const QByteArray &argumento : argumentos) {
        if (!argumento.isEmpty())
            uris.append(uriDe(argumento, aqui));
    }
    return uris;
}

std::optional<Orden> deServicio(Orden::Modo modo, const QByteArrayList &argumentos) {
    using Que = Peticion::Que;
    const QByteArray servicio = argumentos.value(1);
    if (servicio != "comprimir" && servicio != "abrir")
        return std::nullopt;
    const Que que = servicio == "abrir" ? Que::Abrir : Que::Comprimir;
    return Orden{modo, {que, urisDe(argumentos.mid(2))}};
}

} // namespace

std::optional<Orden> Orden::lee(int argc, char **argv) {
    const QByteArrayList argumentos(argv + std::min(argc, 1), argv + argc);
    const QByteArray primero = argumentos.value(0);
    if (primero == "--servicio")
        return deServicio(Modo::Cliente, argumentos);
    if (primero == "--atiende")
        return deServicio(Modo::Ventana, argumentos);
    if (primero == "--espera")
        return Orden{Modo::Espera, {}};
    const QStringList uris = urisDe(argumentos);
    return Orden{Modo::Ventana,
                 {uris.isEmpty() ? Peticion::Que::Activar : Peticion::Que::Ficheros, uris}};
}
