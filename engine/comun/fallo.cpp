#include "comun/fallo.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace orcalin {

std::string causa(int numero) {
    using Par = std::pair<int, std::string_view>;
    static constexpr std::array<Par, 20> textos{{
        {ENOSPC, "no queda espacio en el disco"},
        {EDQUOT, "se ha agotado la cuota de disco"},
        {EFBIG, "el fichero es demasiado grande para este disco"},
        {EACCES, "permiso denegado"},
        {EPERM, "operación no permitida"},
        {EROFS, "el disco es de solo lectura"},
        {ENOENT, "no existe"},
        {EEXIST, "ya existe"},
        {ENOTDIR, "parte de la ruta no es una carpeta"},
        {EISDIR, "es una carpeta"},
        {ENOTEMPTY, "hay una carpeta con contenido en su lugar"},
        {ENAMETOOLONG, "el nombre es demasiado largo"},
        {ELOOP, "hay un enlace simbólico de por medio"},
        {EIO, "el disco no responde bien"},
        {ENOMEM, "no hay memoria bastante"},
        {EAGAIN, "al sistema no le quedan recursos"}, // as for one thread more
        {EMFILE, "hay demasiados ficheros abiertos"},
        {ENFILE, "hay demasiados ficheros abiertos"},
        {EBADF, "la salida está cerrada"},
        {EPIPE, "nadie lee lo que se escribe"},
    }};
    const auto *par = std::find_if(textos.begin(), textos.end(),
                                   [numero](const Par &p) { return p.first == numero; });
    if (par != textos.end())
        return std::string(par->second);
    return "fallo del sistema número " + std::to_string(numero);
}

bool escasea(int numero) {
    return numero == EMFILE || numero == ENFILE || numero == ENOMEM;
}

void falla(std::string_view que, int numero) {
    throw Fallo(std::string(que) + ": " + causa(numero));
}

} // namespace orcalin
