#include "visor.h"

#include "ruta.h"

#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// The temporary folder may be shared: a folder of this name that is a link or
// somebody else's is not ours to walk through. `prohibidos`: permissions that
// it must not give.
bool esCarpetaPropia(const QByteArray &ruta, mode_t prohibidos) {
    struct stat dato {};
    return ::lstat(ruta.constData(), &dato) == 0 && S_ISDIR(dato.st_mode) &&
           dato.st_uid == ::geteuid() && (dato.st_mode & prohibidos) == 0;
}

// Extracted folders keep the modes they had, read-only ones too.
void permiteBorrar(const fs::path &raiz) {
    std::error_code fallo;
    fs::recursive_directory_iterator carpetas(raiz, fs::directory_options::skip_permission_denied,
                                              fallo);
    for (; !fallo && carpetas != fs::recursive_directory_iterator(); carpetas.increment(fallo)) {
        std::error_code ignorado;
        if (carpetas->symlink_status(ignorado).type() == fs::file_type::directory)
            fs::permissions(carpetas->path(), fs::perms::owner_all, fs::perm_options::add,
                            ignorado);
    }
}

} // namespace

QByteArray visor::carpeta() {
    return ruta::temporal() + "/orcalin-ver";
}

std::optional<QByteArray> visor::nuevaCarpeta(const QByteArray &visor) {
    (void)::mkdir(visor.constData(), S_IRWXU);
    if (!esCarpetaPropia(visor, S_IRWXG | S_IRWXO))
        return std::nullopt;
    QByteArray nueva = visor + '/' + ruta::nombreUnico();
    (void)::mkdir(nueva.constData(), S_IRWXU);
    return nueva;
}

QString visor::sinCarpeta() {
    return QStringLiteral("No se pudo preparar la carpeta de las copias.");
}

void visor::aparta(const QByteArray &visor) {
    if (esCarpetaPropia(visor, 0))
        (void)std::rename(visor.constData(), (visor + '-' + ruta::nombreUnico()).constData());
}

void visor::limpiaApartadas(const QByteArray &visor) {
    const std::string principio = visor.toStdString() + '-';
    std::error_code fallo;
    fs::directory_iterator vecinas(fs::path(principio).parent_path(), fallo);
    for (; !fallo && vecinas != fs::directory_iterator(); vecinas.increment(fallo)) {
        const QByteArray vecina = QByteArray::fromStdString(vecinas->path().string());
        if (vecina.startsWith(principio.c_str()) &&
            ruta::esNombreUnico(vecina.mid(static_cast<qsizetype>(principio.size()))))
            limpia(vecina);
    }
}

void visor::limpia(const QByteArray &carpeta) {
    if (!esCarpetaPropia(carpeta, 0))
        return;
    const fs::path raiz = carpeta.toStdString();
    permiteBorrar(raiz);
    std::error_code ignorado;
    fs::remove_all(raiz, ignorado);
}
