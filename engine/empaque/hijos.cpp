#include "empaque/hijos.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <linux/magic.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace orcalin {
namespace {

struct CierraCarpeta {
    void operator()(DIR *carpeta) const { closedir(carpeta); }
};

/// All but the folder itself and the one it is in. Returns an errno value, or 0.
int leeNombres(DIR *carpeta, std::vector<std::string> &nombres) {
    for (;;) {
        errno = 0;
        const dirent *hijo = readdir(carpeta);
        if (hijo == nullptr)
            return errno;
        const std::string_view suyo(hijo->d_name);
        if (suyo != "." && suyo != "..")
            nombres.emplace_back(suyo);
    }
}

} // namespace

std::uint32_t Hijos::huella() const {
    std::uint64_t suma = nombres.size();
    for (const auto &nombre : nombres)
        suma = suma * 0x9e3779b97f4a7c15U + std::hash<std::string>{}(nombre);
    return static_cast<std::uint32_t>(suma >> 32U);
}

Hijos hijosDe(int madre, const std::string &nombre, const FicheroProvisional &destino) {
    Hijos hijos;
    const int fd = openat(madre, nombre.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const std::unique_ptr<DIR, CierraCarpeta> abierta(fd < 0 ? nullptr : fdopendir(fd));
    struct stat estado {};
    if (!abierta || fstat(fd, &estado) != 0) {
        hijos.porque = errno;
        return hijos;
    }
    hijos.inodo = estado.st_ino;
    auto &nombres = hijos.nombres;
    hijos.porque = leeNombres(abierta.get(), nombres);
    for (const auto &nuestro : destino.nombresEn(estado))
        nombres.erase(std::remove(nombres.begin(), nombres.end(), nuestro), nombres.end());
    std::sort(nombres.begin(), nombres.end());
    // A folder that changes while it is read may give a name twice.
    nombres.erase(std::unique(nombres.begin(), nombres.end()), nombres.end());
    return hijos;
}

bool numeraDeVerdad(int fd) {
    constexpr std::array<std::uint32_t, 7> inventan{
        MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, FUSE_SUPER_MAGIC, PROC_SUPER_MAGIC,
        SMB_SUPER_MAGIC,   SMB2_SUPER_MAGIC,  CIFS_SUPER_MAGIC};
    struct statfs sistema {};
    return fstatfs(fd, &sistema) != 0 ||
           std::find(inventan.begin(), inventan.end(),
                     static_cast<std::uint32_t>(sistema.f_type)) == inventan.end();
}

} // namespace orcalin
