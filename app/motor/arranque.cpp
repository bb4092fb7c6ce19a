#include "arranque.h"

#include <cerrno>

QString motivoDeArranque(int fallo) {
    switch (fallo) {
    case ENOENT:
        return QStringLiteral("no existe, o le falta algo para funcionar.");
    case EACCES:
    case EPERM:
        return QStringLiteral("no hay permiso para ejecutarlo.");
    case ENOEXEC:
    case ELIBBAD:
        return QStringLiteral("no es un programa para este ordenador.");
    case E2BIG:
        return QStringLiteral("son demasiados elementos de una vez; prueba con su carpeta.");
    case ENOMEM:
        return QStringLiteral("no queda memoria.");
    case EAGAIN:
        return QStringLiteral("hay demasiados programas en marcha.");
    case EMFILE:
    case ENFILE:
        return QStringLiteral("hay demasiados archivos abiertos.");
    case ETXTBSY:
        return QStringLiteral("alguien lo está modificando.");
    case EIO:
        return QStringLiteral("el disco ha fallado.");
    default:
        return QStringLiteral("fallo %1 del sistema.").arg(fallo);
    }
}

QString sinMotor() {
    return QStringLiteral("No encuentro el motor.");
}

QString noArranca() {
    return QStringLiteral("No pude arrancar el motor.");
}
