#include "empaque/empaquetador.h"

#include "comun/fallo.h"
#include "comun/texto.h"
#include "empaque/hijos.h"
#include "tar/hora.h"

#include <cerrno>

namespace orcalin {
namespace {

const std::string demasiado = "no cabe en este formato";
const std::string haCambiado = "ha cambiado mientras se guardaba";

} // namespace

Empaquetador::Empaquetador(SumideroMarcos &marcosDados, Origenes &origenesDados,
                           const FicheroProvisional &destinoDado, Progreso &progresoDado,
                           Avisos &avisosDados)
    : marcos(marcosDados)
    , tar(marcosDados)
    , origenes(origenesDados)
    , destino(destinoDado)
    , progreso(progresoDado)
    , avisos(avisosDados) {}

void Empaquetador::guarda(const Pieza &pieza) {
    intacta = true;
    intenta(pieza);
    tar.acabaEntrada();
    progreso.termina(pieza, marcos.posicion());
}

void Empaquetador::acaba() {
    tar.cierra();
}

void Empaquetador::intenta(const Pieza &pieza) {
    Cosa cosa;
    const int carpeta = origenes.abre(pieza.carpeta);
    if (carpeta < 0 || !abre(carpeta, pieza.propio.c_str(), pieza.clase, cosa))
        return falta(pieza, errno);
    if ((cosa.estado.st_mode & S_IFMT) != pieza.clase)
        return falta(pieza, haCambiado);
    if (pieza.clase == S_IFREG && cosa.estado.st_size > ficheroMaximo)
        return falta(pieza, EFBIG);
    const Primero *otro = primero(cosa);
    if (pieza.clase == S_IFREG && otro == nullptr)
        guardaFichero(pieza, cosa);
    else
        guardaSinContenido(pieza, cosa, otro);
    // It is packed all the same; but what had the name before may be nowhere.
    if (intacta && pieza.clase != S_IFDIR && esOtra(pieza, cosa))
        falta(pieza, haCambiado);
}

/// Whether it is another one than was found, or a folder with other names in it.
/// Folders come after all that is in them, so that nothing moves unseen.
bool Empaquetador::esOtra(const Pieza &pieza, const Cosa &cosa) const {
    if (cosa.estado.st_ino != pieza.inodo && numeraDeVerdad(cosa.fd.numero()))
        return true;
    if (pieza.clase != S_IFDIR || pieza.incompleta)
        return false;
    const Hijos ahora = hijosDe(cosa.fd.numero(), ".", destino);
    if (escasea(ahora.porque))
        falla("no se puede leer " + ruta(pieza), ahora.porque);
    return ahora.porque != 0 || ahora.huella() != pieza.huella;
}

void Empaquetador::guardaSinContenido(const Pieza &pieza, const Cosa &cosa, const Primero *otro) {
    Asiento asiento;
    asiento.tipo = otro != nullptr ? 'h' : pieza.clase == S_IFDIR ? 'd' : 'l';
    asiento.lugar = marcos.posicion();
    const bool cambiada = asiento.tipo == 'd' && esOtra(pieza, cosa);
    if (cambiada)
        falta(pieza, haCambiado);
    asiento.incompleta = pieza.incompleta || cambiada;
    const Ficha nueva = ficha(pieza, cosa);
    archive_entry_unset_size(nueva.get());
    if (otro != nullptr) {
        archive_entry_copy_hardlink(nueva.get(), otro->nombre.c_str());
        asiento.bytes = otro->bytes;
        asiento.enlazado = otro->lugar;
        asiento.incompleta = otro->incompleta;
    } else if (asiento.tipo == 'l') {
        const std::string lejos = adonde(cosa);
        if (lejos.empty())
            return falta(pieza, errno);
        archive_entry_copy_symlink(nueva.get(), lejos.c_str());
    }
    if (!tar.cabecera(nueva.get()))
        return falta(pieza, demasiado);
    anota(pieza, cosa, asiento);
}

Ficha Empaquetador::ficha(const Pieza &pieza, const Cosa &cosa) {
    Ficha nueva = nuevaFicha();
    archive_entry_copy_stat(nueva.get(), &cosa.estado);
    archive_entry_copy_pathname(nueva.get(), pieza.nombre.c_str());
    // When it was last looked at is of no use in an archive, and packing changes it.
    archive_entry_unset_atime(nueva.get());
    archive_entry_unset_ctime(nueva.get());
    archive_entry_unset_birthtime(nueva.get());
    ponHora(nueva.get(), cosa.estado.st_mtim);
    const std::string sin = extendidos.anade(nueva.get(), cosa);
    if (!sin.empty())
        falta("faltan atributos de " + ruta(pieza) + ": " + sin);
    return nueva;
}

const Empaquetador::Primero *Empaquetador::primero(const Cosa &cosa) const {
    if (!S_ISREG(cosa.estado.st_mode) || cosa.estado.st_nlink < 2)
        return nullptr;
    const auto otro = primeros.find(identidadDe(cosa.estado));
    return otro != primeros.end() ? &otro->second : nullptr;
}

void Empaquetador::guardaFichero(const Pieza &pieza, const Cosa &cosa) {
    Contenido contenido(cosa);
    if (!contenido.impedimento().empty())
        return falta(pieza, contenido.impedimento());
    const Ficha nueva = ficha(pieza, cosa);
    archive_entry_set_size(nueva.get(), static_cast<la_int64_t>(contenido.largo()));
    contenido.anotaHuecos(nueva.get());
    marcos.entrada(pieza.trato, contenido.sinHuecos());
    Asiento asiento;
    asiento.bytes = contenido.largo();
    asiento.lugar = marcos.posicion();
    if (!tar.cabecera(nueva.get()))
        return falta(pieza, demasiado);
    const std::string queja = contenido.guarda(tar);
    asiento.incompleta = !queja.empty();
    if (asiento.incompleta)
        falta(pieza, queja);
    if (cosa.estado.st_nlink > 1)
        primeros.emplace(identidadDe(cosa.estado),
                         Primero{pieza.nombre, asiento.lugar, asiento.bytes, asiento.incompleta});
    anota(pieza, cosa, asiento);
}

void Empaquetador::anota(const Pieza &pieza, const Cosa &cosa, Asiento asiento) {
    constexpr mode_t bitsDePermiso = 07777;
    asiento.ruta = pieza.nombre;
    asiento.permisos = cosa.estado.st_mode & bitsDePermiso;
    asientos.anade(std::move(asiento));
}

void Empaquetador::falta(const Pieza &pieza, int porque) {
    if (escasea(porque))
        falla("no se puede leer " + ruta(pieza), porque);
    falta(pieza, porque == EAGAIN ? "otro programa lo tiene reservado" : causa(porque));
}

void Empaquetador::falta(const Pieza &pieza, const std::string &porque) {
    falta("no se puede leer " + ruta(pieza) + ": " + porque);
}

/// A piece counts once, whatever is wrong with it.
void Empaquetador::falta(std::string_view texto) {
    if (intacta)
        avisos.falta(texto);
    else
        avisos.avisa(texto);
    intacta = false;
}

std::string Empaquetador::ruta(const Pieza &pieza) const {
    return citado(origenes.ruta(pieza.carpeta, pieza.propio));
}

} // namespace orcalin
