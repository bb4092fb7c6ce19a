#include "motor.h"

#include "proceso.h"
#include "ruta.h"
#include "tamano.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// The temporary folder may be shared: a folder of this name that is a link or
// somebody else's is not ours to walk through.
bool esCarpetaPropia(const QByteArray &ruta) {
    struct stat dato {};
    return ::lstat(ruta.constData(), &dato) == 0 && S_ISDIR(dato.st_mode) &&
           dato.st_uid == ::geteuid();
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

Motor::Motor(QObject *padre)
    : QObject(padre) {}

Motor::~Motor() = default;

void Motor::ponEstado(Estado estado) {
    m_estado = std::move(estado);
    emit estadoCambia();
}

void Motor::limpiaTemporales() {
    const QByteArray visor = ruta::temporal() + "/orcalin-ver";
    if (!esCarpetaPropia(visor))
        return;
    const fs::path carpeta = visor.toStdString();
    permiteBorrar(carpeta);
    std::error_code ignorado;
    fs::remove_all(carpeta, ignorado);
}

qint64 Motor::tamano(const QUrl &de) {
    return pesoDe(ruta::nativa(de));
}

void Motor::cancelar() {
    if (m_proceso)
        m_proceso->termina();
    m_proceso.reset();
    ponEstado(Reposo{});
}
