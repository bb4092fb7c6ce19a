#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace orcalin {

/// Turns a closed pipe and a file size limit into errors of write(2) instead
/// of a death that leaves things half done.
void ignoraSenalesDeEscritura();

/// From here on SIGTERM, SIGINT and SIGHUP (unless whoever started us had the
/// last two ignored) remove the ephemeral file and give back its space, then say
/// «Error: » and `texto` on standard error, and end the process with status 1,
/// whatever it is at. The words do not wait for a disk that gets nothing done for
/// half a second, nor for a reader; only the final rename is waited for. To be
/// called before any other thread exists; a second call changes nothing. Throws
/// std::system_error.
void atiendeCancelacion(std::string_view texto);

/// The ephemeral file is the one that a cancel removes; there is none or one at
/// a time. Its folder's descriptor must stay open as long. These four are for
/// one thread at a time.

/// openat(2) of a new file under a name that may turn out to be in use; if it
/// is not, the file is ephemeral.
int creaEfimero(int carpeta, const char *nombre, int modoDeApertura, mode_t permisos);

/// What is about to appear under a name that nobody else uses is ephemeral.
void anunciaEfimero(int carpeta, const std::string &nombre);

/// The ephemeral file, if any, is no longer the canceller's business: it has
/// arrived, or it is gone.
void sueltaEfimero();

/// Gives the ephemeral file its final name in the same folder, in place of what
/// has it, or only if nothing has it (else errno is EEXIST). This is what decides
/// a race against a cancel: either it comes first and the process ends, or the
/// file is there and cancelling is over. Returns what renameat(2) does, or not at
/// all after a cancel.
int consagraEfimero(const char *definitivo, bool reemplaza);

/// Something that a cancel must put back, beside the ephemeral file.
class AlCancelar {
public:
    /// As long as this lives, a cancel calls `remedio` once, on a thread of its
    /// own, after the ephemeral file is gone and before its last words; the process
    /// goes on meanwhile, but this cannot go before `remedio` returns.
    explicit AlCancelar(std::function<void()> remedio);
    AlCancelar(const AlCancelar &) = delete;
    AlCancelar &operator=(const AlCancelar &) = delete;
    ~AlCancelar();

private:
    const std::function<void()> remedio;
};

/// Cancelling is over: the three signals do nothing from here on. If one has come
/// already this does not return, and the process ends.
void yaNoSeCancela();

} // namespace orcalin
