#include "saque/destino.h"

#include "saque/fallo_de_entrada.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orcalin {

Destino::~Destino() {
    retira();
}

void Destino::retira() const {
    for (const auto &hecha : hechas)
        rmdir(hecha.c_str());
}

Descriptor Destino::abre() {
    std::error_code error;
    for (auto falta = ruta; !falta.empty() && !exists(falta, error); falta = falta.parent_path())
        hechas.push_back(falta);
    create_directories(ruta, error);
    remedio.emplace([this] { retira(); });
    if (error)
        fallaDisco("no se puede crear la carpeta de destino", error.value());
    Descriptor fd(open(ruta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido() && errno == EACCES)
        fd = Descriptor(open(ruta.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valido())
        fallaDisco("no se puede entrar en la carpeta de destino", errno);
    return fd;
}

} // namespace orcalin
