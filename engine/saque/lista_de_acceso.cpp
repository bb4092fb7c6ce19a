#include "saque/lista_de_acceso.h"

#include <algorithm>
#include <cstdint>
#include <endian.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <optional>
#include <utility>
#include <vector>

namespace orcalin {
namespace {

using Renglon = posix_acl_xattr_entry; // its fields are little-endian

std::optional<std::uint16_t> clase(int marca) {
    switch (marca) {
    case ARCHIVE_ENTRY_ACL_USER_OBJ:
        return ACL_USER_OBJ;
    case ARCHIVE_ENTRY_ACL_USER:
        return ACL_USER;
    case ARCHIVE_ENTRY_ACL_GROUP_OBJ:
        return ACL_GROUP_OBJ;
    case ARCHIVE_ENTRY_ACL_GROUP:
        return ACL_GROUP;
    case ARCHIVE_ENTRY_ACL_MASK:
        return ACL_MASK;
    case ARCHIVE_ENTRY_ACL_OTHER:
        return ACL_OTHER;
    default:
        return std::nullopt;
    }
}

std::vector<Renglon> renglones(archive_entry *ficha, archive *cuentas, int cual) {
    std::vector<Renglon> todos;
    archive_entry_acl_reset(ficha, cual);
    int tipo = 0;
    int permisos = 0;
    int marca = 0;
    int quien = 0;
    const char *nombre = nullptr;
    while (archive_entry_acl_next(ficha, cual, &tipo, &permisos, &marca, &quien, &nombre) ==
           ARCHIVE_OK) {
        const auto suya = clase(marca);
        if (!suya)
            continue;
        std::int64_t numero = ACL_UNDEFINED_ID;
        if (*suya == ACL_USER)
            numero = archive_write_disk_uid(cuentas, nombre, quien);
        if (*suya == ACL_GROUP)
            numero = archive_write_disk_gid(cuentas, nombre, quien);
        todos.push_back({htole16(*suya), htole16(static_cast<std::uint16_t>(permisos & 7)),
                         htole32(static_cast<std::uint32_t>(numero))});
    }
    return todos;
}

std::string valor(std::vector<Renglon> todos) {
    if (todos.empty())
        return {};
    // The system takes the list in this order only.
    std::sort(todos.begin(), todos.end(), [](const Renglon &a, const Renglon &b) {
        return std::pair(le16toh(a.e_tag), le32toh(a.e_id)) <
               std::pair(le16toh(b.e_tag), le32toh(b.e_id));
    });
    const posix_acl_xattr_header cabecera{htole32(POSIX_ACL_XATTR_VERSION)};
    std::string octetos(reinterpret_cast<const char *>(&cabecera), sizeof cabecera);
    octetos.append(reinterpret_cast<const char *>(todos.data()), todos.size() * sizeof(Renglon));
    return octetos;
}

} // namespace

std::string listaDeAcceso(archive_entry *ficha, archive *cuentas) {
    return valor(renglones(ficha, cuentas, ARCHIVE_ENTRY_ACL_TYPE_ACCESS));
}

std::string listaPorDefecto(archive_entry *ficha, archive *cuentas) {
    return valor(renglones(ficha, cuentas, ARCHIVE_ENTRY_ACL_TYPE_DEFAULT));
}

} // namespace orcalin
