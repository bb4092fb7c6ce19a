#include "saque/disco.h"

#include "comun/fallo.h"
#include "comun/senales.h"
#include "flujo/fichero_provisional.h"
#include "saque/fallo_de_entrada.h"

#include <cerrno>
#include <cstdio>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace orcalin {
namespace {

int opciones() {
    constexpr int fieles = ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_XATTR |
                           ARCHIVE_EXTRACT_ACL | ARCHIVE_EXTRACT_SPARSE;
    constexpr int seguras = ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                            ARCHIVE_EXTRACT_SECURE_NOABSOLUTEPATHS;
    return fieles | seguras | (geteuid() == 0 ? ARCHIVE_EXTRACT_OWNER : 0);
}

/// The next entry would fare no better.
bool esDelDisco(int numero) {
    return numero == ENOSPC || numero == EDQUOT || numero == EIO;
}

/// Whether there is a folder, and not a link to one.
bool esCarpeta(const char *ruta) {
    struct stat estado {};
    return lstat(ruta, &estado) == 0 && S_ISDIR(estado.st_mode);
}

/// A file on its way to its name: gone with whatever prevented its arrival.
class EnCamino {
public:
    explicit EnCamino(const std::string &destinoDado)
        : destino(destinoDado)
        , ruta(rutaProvisional(destinoDado)) {
        if (!borraAlCancelar(ruta))
            throw FalloDeEntrada(causa(ENAMETOOLONG));
    }
    EnCamino(const EnCamino &) = delete;
    EnCamino &operator=(const EnCamino &) = delete;
    ~EnCamino() {
        if (!llegado)
            unlink(ruta.c_str());
    }

    [[nodiscard]] const std::string &provisional() const { return ruta; }

    void llega() {
        // An empty folder gives way to a file of its name, as to any other kind of entry.
        if (rename(ruta.c_str(), destino.c_str()) != 0 &&
            (errno != EISDIR || rmdir(destino.c_str()) != 0 ||
             rename(ruta.c_str(), destino.c_str()) != 0))
            throw FalloDeEntrada(causa(errno));
        llegado = true;
    }

private:
    std::string destino;
    std::string ruta;
    bool llegado = false;
};

} // namespace

Disco::Disco()
    : disco(archive_write_disk_new()) {
    if (!disco)
        throw std::bad_alloc();
    archive_write_disk_set_options(disco.get(), opciones());
    archive_write_disk_set_standard_lookup(disco.get());
}

void Disco::saca(LectorTar &lector, archive_entry *ficha, const Entrada &entrada,
                 const std::string &como) {
    faltaAlgo = false;
    if (!quedaDentro(como))
        throw FalloDeEntrada("su ruta sale de la carpeta de destino");
    if (entrada.tipo == '?')
        throw FalloDeEntrada("no es un fichero ni una carpeta");
    if (entrada.tipo == '-')
        return sacaFichero(lector, ficha, como);
    if (entrada.tipo == 'd')
        return sacaCarpeta(ficha, como);
    cabecera(ficha, como);
    comprueba(archive_write_finish_entry(disco.get()));
}

void Disco::enlaza(archive_entry *ficha, const std::string &ruta, const std::string &enlace) {
    faltaAlgo = false;
    if (!quedaDentro(ruta))
        throw FalloDeEntrada("su ruta sale de la carpeta de destino");
    // A body would be written through the link; the file has it already.
    archive_entry_unset_size(ficha);
    archive_entry_copy_hardlink(ficha, enlace.c_str());
    cabecera(ficha, ruta);
    comprueba(archive_write_finish_entry(disco.get()));
}

void Disco::acaba() {
    // Inner folders first; one that gave way to something else since is gone.
    for (auto i = carpetasDeAntes.rbegin(); i != carpetasDeAntes.rend(); ++i)
        if (esCarpeta(archive_entry_pathname(i->get())) &&
            archive_write_header(disco.get(), i->get()) == ARCHIVE_OK)
            archive_write_finish_entry(disco.get());
    comprueba(archive_write_close(disco.get()));
}

/// The library puts off the times of the folders that it makes, but not of
/// those that it finds: these are gone over once more at the end.
void Disco::sacaCarpeta(archive_entry *ficha, const std::string &como) {
    const bool estaba = esCarpeta(como.c_str());
    cabecera(ficha, como);
    comprueba(archive_write_finish_entry(disco.get()));
    if (estaba)
        carpetasDeAntes.emplace_back(archive_entry_clone(ficha));
}

void Disco::sacaFichero(LectorTar &lector, archive_entry *ficha, const std::string &como) {
    EnCamino fichero(como);
    cabecera(ficha, fichero.provisional());
    copia(lector);
    comprueba(archive_write_finish_entry(disco.get()));
    fichero.llega();
}

void Disco::copia(LectorTar &lector) {
    std::int64_t desplazamiento = 0;
    for (auto trozo = lector.trozo(desplazamiento); !trozo.empty();
         trozo = lector.trozo(desplazamiento))
        comprueba(
            archive_write_data_block(disco.get(), trozo.data(), trozo.size(), desplazamiento));
}

void Disco::cabecera(archive_entry *ficha, const std::string &ruta) {
    archive_entry_copy_pathname(ficha, ruta.c_str());
    comprueba(archive_write_header(disco.get(), ficha));
}

void Disco::comprueba(la_ssize_t resultado) {
    if (resultado == ARCHIVE_OK || resultado > 0)
        return;
    const int numero = archive_errno(disco.get());
    if (esDelDisco(numero))
        falla("no se puede sacar", numero);
    if (resultado == ARCHIVE_WARN) {
        faltaAlgo = true;
        return;
    }
    // Without a number it is the library that refuses, for safety's sake.
    throw FalloDeEntrada(numero > 0 ? causa(numero) : "su ruta pasa por un enlace simbólico");
}

} // namespace orcalin
