#include "nacimiento.h"

#include <csignal>
#include <spawn.h>
#include <unistd.h>
#include <vector>

namespace {

// The attributes and actions of one posix_spawn call.
class Preparativos {
public:
    Preparativos() {
        posix_spawn_file_actions_init(&m_acciones);
        posix_spawnattr_init(&m_atributos);
    }
    ~Preparativos() {
        posix_spawnattr_destroy(&m_atributos);
        posix_spawn_file_actions_destroy(&m_acciones);
    }
    Preparativos(const Preparativos &) = delete;
    Preparativos &operator=(const Preparativos &) = delete;

    int redirige(int salida, int error) {
        int fallo = posix_spawn_file_actions_adddup2(&m_acciones, salida, STDOUT_FILENO);
        if (fallo == 0)
            fallo = posix_spawn_file_actions_adddup2(&m_acciones, error, STDERR_FILENO);
        // Ours are close-on-exec; libraries are not all so careful.
        if (fallo == 0)
            fallo = posix_spawn_file_actions_addclosefrom_np(&m_acciones, STDERR_FILENO + 1);
        return fallo;
    }

    // Neither a blocked signal nor an ignored one of ours may keep the engine
    // from hearing the terminate request.
    int limpiaSenales() {
        sigset_t ninguna;
        sigset_t todas;
        sigemptyset(&ninguna);
        sigfillset(&todas);
        int fallo = posix_spawnattr_setsigmask(&m_atributos, &ninguna);
        if (fallo == 0)
            fallo = posix_spawnattr_setsigdefault(&m_atributos, &todas);
        if (fallo == 0)
            fallo = posix_spawnattr_setflags(&m_atributos,
                                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        return fallo;
    }

    int lanza(pid_t &pid, const QByteArray &ejecutable, const QList<QByteArray> &argumentos) {
        std::vector<char *> argv;
        argv.push_back(const_cast<char *>(ejecutable.constData()));
        for (const QByteArray &argumento : argumentos)
            argv.push_back(const_cast<char *>(argumento.constData()));
        argv.push_back(nullptr);
        return posix_spawn(&pid, ejecutable.constData(), &m_acciones, &m_atributos, argv.data(),
                           environ);
    }

private:
    posix_spawn_file_actions_t m_acciones{};
    posix_spawnattr_t m_atributos{};
};

} // namespace

int nace(pid_t &pid, const QByteArray &ejecutable, const QList<QByteArray> &argumentos, int salida,
         int error) {
    Preparativos preparativos;
    int fallo = preparativos.redirige(salida, error);
    if (fallo == 0)
        fallo = preparativos.limpiaSenales();
    if (fallo == 0)
        fallo = preparativos.lanza(pid, ejecutable, argumentos);
    return fallo;
}
