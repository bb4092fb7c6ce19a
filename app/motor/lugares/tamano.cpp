#include "tamano.h"

#include "ruta.h"
#include "sistema/descriptor.h"

#include <QtGlobal>

#include <condition_variable>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <thread>
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
// folder. What time that takes is the kernel's, so several threads share the
// folders.
class Recorrido {
public:
    Recorrido(int raiz, std::stop_token parar)
        : m_raiz(raiz)
        , m_parar(std::move(parar)) {}

    qint64 suma() {
        apunta(".");
        std::vector<std::jthread> ayudantes;
        try {
            while (ayudantes.size() < kAyudantes)
                ayudantes.emplace_back([this] { trabaja(); });
        } catch (const std::system_error &) {
            // Fewer hands, the same sum.
        }
        trabaja();
        ayudantes.clear();
        return m_suma;
    }

private:
    static constexpr size_t kAyudantes = 3;

    void apunta(std::string camino) {
        const std::lock_guard guardia(m_cerrojo);
        m_pendientes.push_back(std::move(camino));
        m_hay.notify_one();
    }

    // The next folder, or none when all have been read.
    std::optional<std::string> toma() {
        std::unique_lock guardia(m_cerrojo);
        m_hay.wait(guardia, [this] { return !m_pendientes.empty() || m_leyendo == 0; });
        if (m_pendientes.empty())
            return std::nullopt;
        ++m_leyendo;
        std::string camino = std::move(m_pendientes.back());
        m_pendientes.pop_back();
        return camino;
    }

    void acaba(qint64 bytes) {
        const std::lock_guard guardia(m_cerrojo);
        anade(m_suma, bytes);
        if (--m_leyendo == 0)
            m_hay.notify_all();
    }

    void trabaja() {
        while (const auto camino = toma()) {
            const Carpeta carpeta = abre(*camino);
            acaba(carpeta ? lee(carpeta.get(), *camino) : 0);
        }
    }

    [[nodiscard]] Carpeta abre(const std::string &camino) const {
        Descriptor hueco(
            ::openat(m_raiz, camino.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        DIR *carpeta = hueco ? ::fdopendir(hueco.numero()) : nullptr;
        if (carpeta != nullptr)
            hueco.suelta();
        return Carpeta(carpeta);
    }

    qint64 lee(DIR *carpeta, const std::string &camino) {
        qint64 bytes = 0;
        while (!m_parar.stop_requested()) {
            const dirent *entrada = ::readdir(carpeta);
            if (entrada == nullptr)
                break;
            const std::string_view nombre = entrada->d_name;
            if (nombre != "." && nombre != "..")
                anade(bytes, cuenta(::dirfd(carpeta), *entrada, camino));
        }
        return bytes;
    }

    // The bytes of a file; a folder is left for whoever is free.
    qint64 cuenta(int carpeta, const dirent &entrada, const std::string &camino) {
        unsigned char tipo = entrada.d_type;
        struct stat dato {};
        if (tipo == DT_REG || tipo == DT_UNKNOWN) {
            if (::fstatat(carpeta, entrada.d_name, &dato, AT_SYMLINK_NOFOLLOW) != 0)
                return 0;
            tipo = IFTODT(dato.st_mode);
        }
        if (tipo == DT_DIR)
            apunta(camino + '/' + entrada.d_name);
        return tipo == DT_REG ? dato.st_size : 0;
    }

    const int m_raiz;
    const std::stop_token m_parar;
    std::mutex m_cerrojo;
    std::condition_variable m_hay; // a folder to read, or the end
    std::vector<std::string> m_pendientes;
    int m_leyendo = 0;
    qint64 m_suma = 0;
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
    return raiz ? Recorrido(raiz.numero(), parar).suma() : 0;
}

qint64 pesoDe(const QList<QUrl> &urls, const std::stop_token &parar) {
    qint64 suma = 0;
    for (const QUrl &url : urls)
        anade(suma, pesoDe(ruta::nativa(url), parar));
    return suma;
}
