#include "copia.h"

#include <QList>

#include <charconv>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

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
                                   copia::Enlaces enlaces) {
    QByteArray completa = carpeta + '/' + ruta;
    struct stat dato {};
    const int modo = enlaces == copia::Enlaces::Tal ? AT_SYMLINK_NOFOLLOW : 0;
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

std::optional<QByteArray> copia::busca(const QByteArray &carpeta, const QByteArray &ruta,
                                       Enlaces enlaces) {
    if (auto tal = siExiste(carpeta, ruta, enlaces); tal || !ruta.contains('\\'))
        return tal;
    return siExiste(carpeta, sinEscapes(ruta), enlaces);
}

QByteArray copia::prevista(const QByteArray &carpeta, const QByteArray &ruta) {
    const QByteArray real = sinEscapes(ruta);
    return carpeta + '/' + (real.isEmpty() ? ruta : real);
}

void copia::protege(const QByteArray &copia) {
    [[maybe_unused]] const int fallo =
        ::fchmodat(AT_FDCWD, copia.constData(), kSoloLectura, AT_SYMLINK_NOFOLLOW);
}
