#include "tar/lector_tar.h"

#include "comun/fallo.h"
#include "comun/medidas.h"

#include <cerrno>
#include <new>
#include <utility>

namespace orcalin {
namespace {

constexpr std::size_t largoBloque = 128 * kibi;
// Whoever writes whole records of tape fills up the last one.
constexpr std::uint64_t detrasMaximo = 64 * mebi;

} // namespace

LectorTar::LectorTar(std::unique_ptr<Fuente> fuenteDada)
    : fuente(std::move(fuenteDada))
    , bloque(largoBloque)
    , tar(archive_read_new()) {
    if (!tar)
        throw std::bad_alloc();
    archive_read_support_format_tar(tar.get());
    if (archive_read_open(tar.get(), this, nullptr, alLeer, nullptr) != ARCHIVE_OK)
        falla();
}

archive_entry *LectorTar::siguiente() {
    archive_entry *ficha = nullptr;
    conTrozos = false;
    const int resultado = archive_read_next_header(tar.get(), &ficha);
    if (resultado == ARCHIVE_EOF) {
        compruebaElFinal();
        return nullptr;
    }
    if (resultado < ARCHIVE_WARN)
        falla();
    reconocido = true;
    return ficha;
}

std::uint64_t LectorTar::posicion() const {
    return static_cast<std::uint64_t>(archive_read_header_position(tar.get()));
}

Octetos LectorTar::trozo(std::int64_t &desplazamiento) {
    const void *datos = nullptr;
    std::size_t largo = 0;
    conTrozos = true;
    const int resultado = archive_read_data_block(tar.get(), &datos, &largo, &desplazamiento);
    if (resultado == ARCHIVE_EOF)
        return {};
    if (resultado < ARCHIVE_WARN)
        falla();
    return {static_cast<const unsigned char *>(datos), largo};
}

void LectorTar::compruebaElFinal() {
    // The library takes a bare end of data for the end of the archive.
    if (agotada)
        throw Fallo("el archivo está incompleto");
    std::uint64_t detras = 0;
    while (const auto leidos = fuente->lee(bloque))
        if ((detras += leidos) > detrasMaximo)
            throw Fallo("el archivo está dañado");
}

la_ssize_t LectorTar::alLeer(archive *, void *yo, const void **datos) {
    auto *lector = static_cast<LectorTar *>(yo);
    try {
        const std::size_t leidos = lector->fuente->lee(lector->bloque);
        lector->agotada = leidos == 0;
        *datos = lector->bloque.data();
        return static_cast<la_ssize_t>(leidos);
    } catch (...) {
        lector->pendiente = std::current_exception();
        return ARCHIVE_FATAL;
    }
}

void LectorTar::falla() {
    if (pendiente)
        std::rethrow_exception(pendiente);
    if (archive_errno(tar.get()) == ENOMEM)
        throw std::bad_alloc();
    if (agotada && reconocido)
        throw Fallo("el archivo está incompleto");
    throw Fallo(reconocido ? "el archivo está dañado" : "no es un archivo .okz");
}

} // namespace orcalin
