#pragma once

#include "flujo/descriptor.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace orcalin {

/// Whether both are of one file.
inline bool mismo(const struct stat &a, const struct stat &b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Where an archive is to stand: a name in an open folder. All that could keep
/// it from getting there, as far as it can be known, is found out before the
/// work. Nothing is ever made under the name itself.
class Sitio {
public:
    /// A destination that is a symbolic link stands for what it points to,
    /// unless it is one that the system would not follow either: somebody
    /// else's in a sticky folder that everybody may write into. Throws Fallo if
    /// nothing of that name can be made there, or if what has it is no regular
    /// file, is not for this user to write to, or cannot be replaced.
    explicit Sitio(std::filesystem::path destino);

    /// Its descriptor; perhaps without the right to read it.
    [[nodiscard]] int carpeta() const { return abierta.numero(); }
    [[nodiscard]] const std::string &nombre() const { return suyo; }

    /// The path of something in the folder, as the user would write it.
    [[nodiscard]] std::filesystem::path ruta(const std::string &nombreDado) const {
        return lugar / nombreDado;
    }

    /// Whether there was a file of that name, and if so its status.
    [[nodiscard]] bool ocupado() const { return hayAnterior; }
    [[nodiscard]] const struct stat &deAntes() const { return anterior; }

    /// Whether that file still has the name, as it was, and may still be replaced:
    /// who puts or writes something else there meanwhile was not asked.
    [[nodiscard]] bool sigueElDeAntes() const;

private:
    void resuelve(const std::filesystem::path &destino);
    bool sigueUnEnlace(std::filesystem::path &destino);
    void compruebaCarpeta() const;
    void compruebaAnterior() const;
    [[nodiscard]] bool soloSeLee(const struct stat &estado) const;
    void ensaya() const;
    [[nodiscard]] int ensayaEn(const std::string &aparte) const;

    std::filesystem::path lugar; // of the folder
    Descriptor abierta;
    std::string suyo;
    bool hayAnterior = false;
    struct stat anterior {};
};

} // namespace orcalin
