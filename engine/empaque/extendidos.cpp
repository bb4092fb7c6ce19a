#include "empaque/extendidos.h"

#include "comun/fallo.h"
#include "comun/medidas.h"
#include "comun/texto.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <endian.h>
#include <linux/limits.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <new>
#include <optional>
#include <sys/xattr.h>

namespace orcalin {
namespace {

/// Readers take an extended header of 1 MiB and no more. Beside attributes it
/// may hold two long paths and the target of a link.
constexpr std::size_t paraAtributos = mebi - 64 * kibi;
/// Nor do they all take an access list whose text is longer than this.
constexpr std::size_t listaMaxima = 128 * kibi;
constexpr std::size_t porRegistro = 40; // what stands around a name and its value
constexpr std::size_t porRenglon = 40;  // and around the name in a list

/// What stands for it where there is no descriptor to ask.
std::string rutaDe(const Cosa &cosa) {
    return "/proc/self/fd/" + std::to_string(cosa.fd.numero());
}

ssize_t lista(const Cosa &cosa, std::vector<char> &en) {
    return cosa.leible ? flistxattr(cosa.fd.numero(), en.data(), en.size())
                       : listxattr(rutaDe(cosa).c_str(), en.data(), en.size());
}

ssize_t lee(const Cosa &cosa, const char *nombre, std::vector<char> &en) {
    return cosa.leible ? fgetxattr(cosa.fd.numero(), nombre, en.data(), en.size())
                       : getxattr(rutaDe(cosa).c_str(), nombre, en.data(), en.size());
}

/// The access list again, and names of a kind that nobody uses any more.
bool sobra(std::string_view nombre) {
    return nombre.starts_with("trusted.SGI_ACL_") || nombre.starts_with("xfsroot.");
}

std::optional<int> tipoDeLista(std::string_view nombre) {
    if (nombre == "system.posix_acl_access")
        return ARCHIVE_ENTRY_ACL_TYPE_ACCESS;
    if (nombre == "system.posix_acl_default")
        return ARCHIVE_ENTRY_ACL_TYPE_DEFAULT;
    return std::nullopt;
}

int marca(unsigned cual) {
    switch (cual) {
    case ACL_USER:
        return ARCHIVE_ENTRY_ACL_USER;
    case ACL_GROUP_OBJ:
        return ARCHIVE_ENTRY_ACL_GROUP_OBJ;
    case ACL_GROUP:
        return ARCHIVE_ENTRY_ACL_GROUP;
    case ACL_MASK:
        return ARCHIVE_ENTRY_ACL_MASK;
    case ACL_OTHER:
        return ARCHIVE_ENTRY_ACL_OTHER;
    default:
        return ARCHIVE_ENTRY_ACL_USER_OBJ;
    }
}

} // namespace

Extendidos::Extendidos()
    : cuentas(archive_read_disk_new())
    , nombres(XATTR_LIST_MAX)
    , octetos(XATTR_SIZE_MAX) {
    if (!cuentas)
        throw std::bad_alloc();
    archive_read_disk_set_standard_lookup(cuentas.get());
}

std::string Extendidos::anade(archive_entry *ficha, const Cosa &cosa) {
    caben = paraAtributos;
    primera.clear();
    mas = 0;
    archive_entry_copy_uname(ficha, archive_read_disk_uname(cuentas.get(), cosa.estado.st_uid));
    archive_entry_copy_gname(ficha, archive_read_disk_gname(cuentas.get(), cosa.estado.st_gid));
    const ssize_t largo = lista(cosa, nombres);
    // Where the system shows no descriptors, a link has nobody to ask.
    const bool nadieLoSabe = errno == ENOENT && S_ISLNK(cosa.estado.st_mode);
    if (largo < 0 && errno != ENOTSUP && errno != ENOSYS && !nadieLoSabe)
        return causa(errno);
    for (ssize_t i = 0; i < largo; i += static_cast<ssize_t>(std::strlen(&nombres[i])) + 1)
        if (!sobra(&nombres[i]))
            anadeUno(ficha, cosa, &nombres[i]);
    return mas == 0 ? primera : primera + " (y " + std::to_string(mas) + " más)";
}

void Extendidos::anadeUno(archive_entry *ficha, const Cosa &cosa, const char *nombre) {
    const ssize_t largo = lee(cosa, nombre, octetos);
    if (largo < 0) {
        if (errno != ENODATA) // else it was removed just now
            queja(nombre, causa(errno));
        return;
    }
    const std::string_view valor(octetos.data(), static_cast<std::size_t>(largo));
    if (const auto tipo = tipoDeLista(nombre))
        return anadeLista(ficha, valor, *tipo, nombre);
    const std::size_t ocupa = std::strlen(nombre) + valor.size() + porRegistro;
    // The name ends where the first of these is.
    if (std::strchr(nombre, '=') != nullptr)
        return queja(nombre, "su nombre no cabe en este formato");
    if (ocupa > caben)
        return queja(nombre, "no cabe en este formato");
    caben -= ocupa;
    archive_entry_xattr_add_entry(ficha, nombre, valor.data(), valor.size());
}

void Extendidos::anadeLista(archive_entry *ficha, std::string_view valor, int cual,
                            const char *nombre) {
    std::vector<Renglon> renglones;
    std::size_t ocupa = 0;
    bool todosCaben = true;
    constexpr std::size_t largo = sizeof(posix_acl_xattr_entry);
    for (std::size_t i = sizeof(posix_acl_xattr_header); i + largo <= valor.size(); i += largo) {
        renglones.push_back(renglon(valor.substr(i, largo)));
        ocupa += renglones.back().nombre.size() + porRenglon;
        todosCaben = todosCaben && cabe(renglones.back());
    }
    if (ocupa > std::min(listaMaxima, caben) || !todosCaben)
        return queja(nombre, "no cabe en este formato");
    caben -= ocupa;
    for (const auto &uno : renglones)
        archive_entry_acl_add_entry(ficha, cual, uno.permisos, uno.marca,
                                    static_cast<int>(uno.quien), uno.nombre.c_str());
}

/// Whoever has a number beyond these would be written as root.
bool Extendidos::cabe(const Renglon &uno) {
    const bool deAlguien =
        uno.marca == ARCHIVE_ENTRY_ACL_USER || uno.marca == ARCHIVE_ENTRY_ACL_GROUP;
    return !deAlguien || uno.quien <= INT_MAX;
}

Extendidos::Renglon Extendidos::renglon(std::string_view crudo) {
    posix_acl_xattr_entry uno{};
    std::memcpy(&uno, crudo.data(), sizeof uno);
    const int clase = marca(le16toh(uno.e_tag));
    const std::uint32_t quien = le32toh(uno.e_id);
    const char *nombre = nullptr;
    if (clase == ARCHIVE_ENTRY_ACL_USER)
        nombre = archive_read_disk_uname(cuentas.get(), quien);
    if (clase == ARCHIVE_ENTRY_ACL_GROUP)
        nombre = archive_read_disk_gname(cuentas.get(), quien);
    return {le16toh(uno.e_perm), clase, quien, nombre == nullptr ? "" : nombre};
}

void Extendidos::queja(std::string_view nombre, std::string_view porque) {
    if (primera.empty())
        primera = citado(nombre) + ": " + std::string(porque);
    else
        ++mas;
}

} // namespace orcalin
