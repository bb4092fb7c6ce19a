#include "tar/entrada.h"

#include "comun/fallo.h"

#include <sys/stat.h>

namespace orcalin {
namespace {

constexpr mode_t bitsDePermiso = 07777;

/// Cuts the first component off `resto`.
std::string_view componente(std::string_view &resto) {
    const auto barra = resto.find('/');
    const auto parte = resto.substr(0, barra);
    resto.remove_prefix(barra == std::string_view::npos ? resto.size() : barra + 1);
    return parte;
}

char tipoDe(archive_entry *ficha) {
    switch (archive_entry_filetype(ficha)) {
    case AE_IFREG:
        return '-';
    case AE_IFDIR:
        return 'd';
    case AE_IFLNK:
        return 'l';
    default:
        return '?';
    }
}

/// As the system has them: beside a list of access its mask stands for the group,
/// in whose place the library puts what that list has for the group alone.
mode_t permisosDe(archive_entry *ficha) {
    constexpr int lista = ARCHIVE_ENTRY_ACL_TYPE_ACCESS;
    const mode_t permisos = archive_entry_perm(ficha) & bitsDePermiso;
    archive_entry_acl_reset(ficha, lista);
    int tipo = 0;
    int suyos = 0;
    int marca = 0;
    int quien = 0;
    const char *nombre = nullptr;
    while (archive_entry_acl_next(ficha, lista, &tipo, &suyos, &marca, &quien, &nombre) ==
           ARCHIVE_OK)
        if (marca == ARCHIVE_ENTRY_ACL_MASK)
            return (permisos & ~mode_t{S_IRWXG}) | (static_cast<mode_t>(suyos) & 7U) << 3U;
    return permisos;
}

} // namespace

Entrada describe(archive_entry *ficha) {
    const char *ruta = archive_entry_pathname(ficha);
    if (ruta == nullptr)
        throw Fallo("el archivo está dañado");
    Entrada entrada;
    entrada.ruta = normaliza(ruta);
    entrada.permisos = permisosDe(ficha);
    if (const char *otra = archive_entry_hardlink(ficha)) {
        entrada.tipo = 'h';
        entrada.enlace = normaliza(otra);
        return entrada;
    }
    entrada.tipo = tipoDe(ficha);
    entrada.bytes = entrada.tipo == '-' ? archive_entry_size(ficha) : 0;
    return entrada;
}

std::string normaliza(std::string_view ruta) {
    std::string limpia = ruta.starts_with('/') ? "/" : "";
    while (!ruta.empty()) {
        const auto parte = componente(ruta);
        if (parte.empty() || parte == ".")
            continue;
        if (!limpia.empty() && limpia.back() != '/')
            limpia += '/';
        limpia += parte;
    }
    return limpia;
}

bool quedaDentro(std::string_view ruta) {
    if (ruta.starts_with('/'))
        return false;
    while (!ruta.empty())
        if (componente(ruta) == "..")
            return false;
    return true;
}

bool esDe(std::string_view ruta, std::string_view carpeta) {
    return ruta.starts_with(carpeta) &&
           (ruta.size() == carpeta.size() || ruta[carpeta.size()] == '/');
}

} // namespace orcalin
