#include "saque/atributos.h"

#include "saque/lista_de_acceso.h"
#include "tar/hora.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <linux/limits.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr mode_t todos = 07777;
constexpr mode_t deRoot = S_ISUID | S_ISGID;

/// Asked for once: there is a question about every entry.
struct Quien {
    uid_t usuario = geteuid();
    gid_t grupo = getegid();
};

const Quien &yo() {
    static const Quien somos;
    return somos;
}

bool esRoot() {
    return yo().usuario == 0;
}

void anadeLista(Atributos &atributos, const char *nombre, std::string lista) {
    if (!lista.empty())
        atributos.listas.emplace_back(nombre, std::move(lista));
}

void leeExtendidos(Atributos &atributos, archive_entry *ficha, archive *cuentas) {
    const char *nombre = nullptr;
    const void *valor = nullptr;
    std::size_t largo = 0;
    archive_entry_xattr_reset(ficha);
    while (archive_entry_xattr_next(ficha, &nombre, &valor, &largo) == ARCHIVE_OK)
        if (esRoot() || std::string_view(nombre).starts_with("user."))
            atributos.extendidos.emplace_back(nombre,
                                              std::string(static_cast<const char *>(valor), largo));
    anadeLista(atributos, "system.posix_acl_access", listaDeAcceso(ficha, cuentas));
    anadeLista(atributos, "system.posix_acl_default", listaPorDefecto(ficha, cuentas));
}

bool ponExtendidos(int fd, const std::vector<std::pair<std::string, std::string>> &extendidos) {
    bool bien = true;
    for (const auto &[nombre, valor] : extendidos)
        bien = fsetxattr(fd, nombre.c_str(), valor.data(), valor.size(), 0) == 0 && bien;
    return bien;
}

/// When it was last looked at is left to the system.
std::array<timespec, 2> horas(const Atributos &atributos) {
    return {timespec{0, UTIME_OMIT}, atributos.hora};
}

} // namespace

bool Atributos::bastaConCrear() const {
    const bool mio = !conDueno || (usuario == yo().usuario && grupo == yo().grupo);
    return mio && extendidos.empty() && listas.empty() && (permisos & deRoot) == 0;
}

Atributos leeAtributos(archive_entry *ficha, archive *cuentas) {
    Atributos atributos;
    atributos.permisos = archive_entry_perm(ficha) & (esRoot() ? todos : todos & ~deRoot);
    atributos.conDueno = esRoot();
    if (atributos.conDueno) {
        atributos.usuario = static_cast<uid_t>(
            archive_write_disk_uid(cuentas, archive_entry_uname(ficha), archive_entry_uid(ficha)));
        atributos.grupo = static_cast<gid_t>(
            archive_write_disk_gid(cuentas, archive_entry_gname(ficha), archive_entry_gid(ficha)));
    }
    atributos.conHora = leeHora(ficha, atributos.hora);
    leeExtendidos(atributos, ficha, cuentas);
    return atributos;
}

Atributos atributosDe(int fd, const struct stat &estado) {
    Atributos atributos;
    atributos.permisos = estado.st_mode & (esRoot() ? todos : todos & ~deRoot);
    atributos.conDueno = esRoot();
    atributos.usuario = estado.st_uid;
    atributos.grupo = estado.st_gid;
    atributos.conHora = true;
    atributos.hora = estado.st_mtim;
    std::string nombres(XATTR_LIST_MAX, '\0');
    const ssize_t largo = flistxattr(fd, nombres.data(), nombres.size());
    nombres.resize(largo > 0 ? static_cast<std::size_t>(largo) : 0);
    for (std::size_t i = 0; i < nombres.size(); i += std::strlen(&nombres[i]) + 1) {
        const std::string nombre = &nombres[i];
        std::string valor(XATTR_SIZE_MAX, '\0');
        const ssize_t bytes = fgetxattr(fd, nombre.c_str(), valor.data(), valor.size());
        if (bytes < 0 || (!esRoot() && !nombre.starts_with("user.")))
            continue;
        valor.resize(static_cast<std::size_t>(bytes));
        auto &donde = nombre.starts_with("system.") ? atributos.listas : atributos.extendidos;
        donde.emplace_back(nombre, std::move(valor));
    }
    return atributos;
}

bool ponAtributos(int fd, const Atributos &atributos, bool tieneDuenoYPermisos) {
    bool bien = true;
    mode_t permisos = atributos.permisos;
    // A new owner makes the system drop capabilities and the setuid bit; with
    // the wrong owner that bit must not come back.
    if (!tieneDuenoYPermisos && atributos.conDueno &&
        fchown(fd, atributos.usuario, atributos.grupo) != 0) {
        bien = false;
        permisos &= ~deRoot;
    }
    bien = ponExtendidos(fd, atributos.extendidos) && bien;
    // The mode may forbid what comes before, and would change what comes after.
    if (!tieneDuenoYPermisos)
        bien = fchmod(fd, permisos) == 0 && bien;
    bien = ponExtendidos(fd, atributos.listas) && bien;
    if (atributos.conHora)
        bien = futimens(fd, horas(atributos).data()) == 0 && bien;
    return bien;
}

bool ponAtributosAlEnlace(int carpeta, const std::string &nombre, const Atributos &atributos) {
    bool bien = true;
    if (atributos.conDueno)
        bien = fchownat(carpeta, nombre.c_str(), atributos.usuario, atributos.grupo,
                        AT_SYMLINK_NOFOLLOW) == 0;
    // There is no call for the attributes of a link relative to an open folder.
    const std::string ruta = "/proc/self/fd/" + std::to_string(carpeta) + "/" + nombre;
    for (const auto &[cual, valor] : atributos.extendidos)
        bien = lsetxattr(ruta.c_str(), cual.c_str(), valor.data(), valor.size(), 0) == 0 && bien;
    if (atributos.conHora)
        bien =
            utimensat(carpeta, nombre.c_str(), horas(atributos).data(), AT_SYMLINK_NOFOLLOW) == 0 &&
            bien;
    return bien;
}

} // namespace orcalin
