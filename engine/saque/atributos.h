#pragma once

#include "tar/asa.h"

#include <ctime>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace orcalin {

/// What an archive tells of an entry besides its content, as far as this user
/// may give it: an owner, the setuid and setgid bits, and attributes that are
/// not «user.» are root's to give.
struct Atributos {
    mode_t permisos = 0;
    bool conDueno = false;
    uid_t usuario = 0;
    gid_t grupo = 0;
    bool conHora = false;
    timespec hora{}; ///< of the last change
    std::vector<std::pair<std::string, std::string>> extendidos;
    std::vector<std::pair<std::string, std::string>> listas; ///< of access, which add to the mode

    /// Whether a new file opened with `permisos` as its mode, in a folder that
    /// hands nothing on, has owner and mode from its beginning.
    [[nodiscard]] bool bastaConCrear() const;
};

/// `cuentas` is a writer to disk that finds out who a name stands for.
Atributos leeAtributos(archive_entry *ficha, archive *cuentas);

/// Those of a file that is there, open as `fd` and with the status `estado`.
Atributos atributosDe(int fd, const struct stat &estado);

/// Gives an open file or folder its attributes, except owner and mode if it has
/// these. False if some could not be given.
bool ponAtributos(int fd, const Atributos &atributos, bool tieneDuenoYPermisos);

/// The same for the symbolic link `nombre` in the folder `carpeta`.
bool ponAtributosAlEnlace(int carpeta, const std::string &nombre, const Atributos &atributos);

} // namespace orcalin
