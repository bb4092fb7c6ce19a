#include "copias.h"

#include "ruta.h"

#include <QList>

#include <charconv>
#include <cstdio>
#include <fcntl.h>
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

constexpr mode_t kSoloLectura = S_IRUSR | S_IRGRP | S_IROTH;

// A zero byte would cut the path short, and it would be another's.
bool quedaDentro(const QByteArray &ruta) {
    bool nombra = false;
    for (const QByteArray &parte : ruta.split('/')) {
        if (parte == ".." || parte.contains('\0'))
            return false;
        nombra = nombra || (!parte.isEmpty() && parte != ".");
    }
    return nombra;
}

std::optional<QByteArray> siExiste(const QByteArray &carpeta, const QByteArray &ruta,
                                   copias::Enlaces enlaces) {
    QByteArray completa = carpeta + '/' + ruta;
    struct stat dato {};
    const int modo = enlaces == copias::Enlaces::Tal ? AT_SYMLINK_NOFOLLOW : 0;
    if (!quedaDentro(ruta) || ::fstatat(AT_FDCWD, completa.constData(), &dato, modo) != 0)
        return std::nullopt;
    return completa;
}

// The byte that an escape stands for, and how long the escape is.
struct Escape {
    char byte;
    qsizetype largo;
};

std::optional<Escape> escapeEn(const QByteArray &texto, qsizetype i) {
    if (texto.mid(i, 2) == "\\\\")
        return Escape{'\\', 2};
    if (texto.mid(i, 2) != "\\x" || texto.size() < i + 4)
        return std::nullopt;
    const char *cifras = texto.constData() + i + 2;
    unsigned char valor = 0;
    if (std::from_chars(cifras, cifras + 2, valor, 16).ptr != cifras + 2)
        return std::nullopt;
    return Escape{static_cast<char>(valor), 4};
}

// Empty when something in it is no escape.
QByteArray sinEscapes(const QByteArray &texto) {
    QByteArray real;
    for (qsizetype i = 0; i < texto.size();) {
        const auto escape = texto[i] == '\\' ? escapeEn(texto, i) : Escape{texto[i], 1};
        if (!escape)
            return {};
        real += escape->byte;
        i += escape->largo;
    }
    return real;
}

} // namespace

QByteArray copias::carpeta() {
    return ruta::temporal() + "/orcalin-ver";
}

std::optional<QByteArray> copias::nuevaCarpeta(const QByteArray &visor) {
    (void)::mkdir(visor.constData(), S_IRWXU);
    if (!esCarpetaPropia(visor, S_IRWXG | S_IRWXO))
        return std::nullopt;
    QByteArray nueva = visor + '/' + ruta::nombreUnico();
    (void)::mkdir(nueva.constData(), S_IRWXU);
    return nueva;
}

QString copias::sinCarpeta() {
    return QStringLiteral("No se pudo preparar la carpeta de las copias.");
}

void copias::aparta(const QByteArray &visor) {
    if (esCarpetaPropia(visor, 0))
        (void)std::rename(visor.constData(), (visor + '-' + ruta::nombreUnico()).constData());
}

void copias::limpiaApartadas(const QByteArray &visor) {
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

void copias::limpia(const QByteArray &carpeta) {
    if (!esCarpetaPropia(carpeta, 0))
        return;
    const fs::path raiz = carpeta.toStdString();
    permiteBorrar(raiz);
    std::error_code ignorado;
    fs::remove_all(raiz, ignorado);
}

std::optional<QByteArray> copias::busca(const QByteArray &carpeta, const QByteArray &ruta,
                                        Enlaces enlaces) {
    if (auto tal = siExiste(carpeta, ruta, enlaces); tal || !ruta.contains('\\'))
        return tal;
    return siExiste(carpeta, sinEscapes(ruta), enlaces);
}

QByteArray copias::prevista(const QByteArray &carpeta, const QByteArray &ruta) {
    const QByteArray real = sinEscapes(ruta);
    return carpeta + '/' + (real.isEmpty() ? ruta : real);
}

void copias::protege(const QByteArray &copia) {
    [[maybe_unused]] const int fallo =
        ::fchmodat(AT_FDCWD, copia.constData(), kSoloLectura, AT_SYMLINK_NOFOLLOW);
}
