#include "tar/escritor_tar.h"

#include "comun/fallo.h"
#include "tar/marca.h"
#include "tar/nombres_de_atributos.h"

#include <cerrno>
#include <new>
#include <utility>

namespace orcalin {

EscritorTar::EscritorTar(Receptor &abajoDado)
    : abajo(abajoDado)
    , tar(archive_write_new()) {
    if (!tar)
        throw std::bad_alloc();
    comprueba(archive_write_set_format_pax(tar.get()));
    comprueba(archive_write_set_format_option(tar.get(), "pax", "xattrheader", "SCHILY"));
    comprueba(archive_write_add_filter_none(tar.get()));
    // Blocks are the business of the sink below.
    comprueba(archive_write_set_bytes_per_block(tar.get(), 0));
    comprueba(archive_write_open(tar.get(), this, nullptr, alEscribir, nullptr));
}

bool EscritorTar::cabecera(archive_entry *ficha) {
    const NombresDeAtributos nombres(ficha);
    retiene = nombres.hayQueReponer();
    const int resultado = archive_write_header(tar.get(), ficha);
    if (std::exchange(retiene, false)) {
        nombres.repon(retenido);
        abajo.escribe(std::exchange(retenido, {}));
    }
    if (resultado == ARCHIVE_FATAL)
        comprueba(resultado);
    return resultado >= ARCHIVE_WARN;
}

void EscritorTar::datos(Octetos datos) {
    comprueba(archive_write_data(tar.get(), datos.data(), datos.size()));
}

void EscritorTar::acabaEntrada() {
    comprueba(archive_write_finish_entry(tar.get()));
}

void EscritorTar::cierra() {
    comprueba(archive_write_close(tar.get()));
}

la_ssize_t EscritorTar::alEscribir(archive *, void *yo, const void *datos, std::size_t largo) {
    auto *escritor = static_cast<EscritorTar *>(yo);
    try {
        const Octetos parte(static_cast<const unsigned char *>(datos), largo);
        // Freeing the writer after a failure flushes once more.
        if (escritor->pendiente)
            return static_cast<la_ssize_t>(largo);
        // The mark counts as the first entry's: it goes before that, not by itself.
        if (!std::exchange(escritor->conMarca, true))
            escritor->abajo.escribe(marcaDeIndice());
        if (escritor->retiene)
            escritor->retenido.insert(escritor->retenido.end(), parte.begin(), parte.end());
        else
            escritor->abajo.escribe(parte);
        return static_cast<la_ssize_t>(largo);
    } catch (...) {
        escritor->pendiente = std::current_exception();
        return ARCHIVE_FATAL;
    }
}

void EscritorTar::comprueba(la_ssize_t resultado) {
    if (pendiente)
        std::rethrow_exception(pendiente);
    if (resultado < ARCHIVE_WARN && archive_errno(tar.get()) == ENOMEM)
        throw std::bad_alloc();
    if (resultado < ARCHIVE_WARN)
        throw Fallo("no se puede formar el archivo");
}

} // namespace orcalin
