#include "tamano.h"

#include "descriptor.h"
#include "ruta.h"

#include <QtGlobal>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

struct CierraCarpeta {
    void operator()(DIR *carpeta) const { ::closedir(carpeta); }
};
using Carpeta = std::unique_ptr<DIR, CierraCarpeta>;

void anade(qint64 &suma, qint64 bytes) {
    if (__builtin_add_overflow(suma, bytes, &suma))
        qFatal("la suma de tamaños no cabe en 64 bits");
}

// Walks a tree by descriptor: one fstatat per file on a short name, none per
// folder. Looking every file up by its whole path would double the time.
class Recorrido {
public:
    explicit Recorrido(int raiz)
        : m_raiz(raiz) {}

    qint64 suma(const std::stop_token &parar) {
        m_pendientes.emplace_back(".");
        while (!m_pendientes.empty() && !parar.stop_requested()) {
            const std::string camino = std::move(m_pendientes.back());
            m_pendientes.pop_back();
            if (const Carpeta carpeta = abre(camino))
                lee(carpeta.get(), camino, parar);
        }
        return m_suma;
    }

private:
    [[nodiscard]] Carpeta abre(const std::string &camino) const {
        Descriptor hueco(
            ::openat(m_raiz, camino.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        DIR *carpeta = hueco ? ::fdopendir(hueco.numero()) : nullptr;
        if (carpeta != nullptr)
            hueco.suelta();
        return Carpeta(carpeta);
    }

    void lee(DIR *carpeta, const std::string &camino, const std::stop_token &parar) {
        while (!parar.stop_requested()) {
            const dirent *entrada = ::readdir(carpeta);
            if (entrada == nullptr)
                return;
            const std::string_view nombre = entrada->d_name;
            if (nombre != "." && nombre != "..")
                cuenta(::dirfd(carpeta), *entrada, camino);
        }
    }

    void cuenta(int carpeta, const dirent &entrada, const std::string &camino) {
        unsigned char tipo = entrada.d_type;
        struct stat dato {};
        if (tipo == DT_REG || tipo == DT_UNKNOWN) {
            if (::fstatat(carpeta, entrada.d_name, &dato, AT_SYMLINK_NOFOLLOW) != 0)
                return;
            tipo = IFTODT(dato.st_mode);
        }
        if (tipo == DT_REG)
            anade(m_suma, dato.st_size);
        else if (tipo == DT_DIR)
            m_pendientes.push_back(camino + '/' + entrada.d_name);
    }

    int m_raiz;
    qint64 m_suma = 0;
    std::vector<std::string> m_pendientes;
};

} // namespace

qint64 pesoDe(const QByteArray &ruta, const std::stop_token &parar) {
    struct stat dato {};
    if (::lstat(ruta.constData(), &dato) != 0)
        return 0;
    if (!S_ISDIR(dato.st_mode))
        return dato.st_size;
    const Descriptor raiz(
        ::open(ruta.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return raiz ? Recorrido(raiz.numero()).suma(parar) : 0;
}

qint64 pesoDe(const QList<QUrl> &urls, const std::stop_token &parar) {
    qint64 suma = 0;
    for (const QUrl &url : urls)
        anade(suma, pesoDe(ruta::nativa(url), parar));
    return suma;
}
