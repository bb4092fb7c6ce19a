#include "cifrado/llavero.h"

#include "comun/consola.h"
#include "comun/fallo.h"

#include <algorithm>
#include <cstdlib>
#include <linux/keyctl.h>
#include <optional>
#include <sys/syscall.h>
#include <unistd.h>

namespace orcalin {
namespace {

constexpr int factorGuardado = 13;
constexpr unsigned segundosDeDesuso = 60;
constexpr const char *clase = "user";

// For the possessor alone: view, read, search, link, setattr.
constexpr unsigned permisos = 0x3b000000;

template<typename... Argumentos>
long llaves(int orden, Argumentos... argumentos) {
    return syscall(SYS_keyctl, orden, argumentos...);
}

/// The session's keyring, or the user's where there are no sessions; 0, which
/// names none, if it cannot be had. Asked for by its alias, the kernel would
/// make one that dies with this process.
long deLaSesion() {
    return std::max(0L, llaves(KEYCTL_GET_KEYRING_ID, KEY_SPEC_SESSION_KEYRING, 0));
}

std::string nombreDe(const CabeceraAge &cabecera) {
    std::array<unsigned char, crypto_generichash_BYTES> resumen{};
    const Octetos texto = cabecera.octetos();
    crypto_generichash(resumen.data(), resumen.size(), texto.data(), texto.size(), nullptr, 0);
    std::string cifras(2 * resumen.size() + 1, '\0');
    sodium_bin2hex(cifras.data(), cifras.size(), resumen.data(), resumen.size());
    cifras.pop_back(); // the terminating zero
    return "orcalin:" + cifras;
}

void renueva(long llave) {
    llaves(KEYCTL_SET_TIMEOUT, llave, segundosDeDesuso);
}

std::optional<Secreto> busca(const CabeceraAge &cabecera, const Secreto &contrasena) {
    const long llave = llaves(KEYCTL_SEARCH, deLaSesion(), clase, nombreDe(cabecera).c_str(), 0);
    std::string guardado(cabeceraMaxima, '\0');
    const long largo =
        llave < 0 ? llave : llaves(KEYCTL_READ, llave, guardado.data(), guardado.size());
    if (largo < 0 || static_cast<std::size_t>(largo) > guardado.size())
        return std::nullopt;
    guardado.resize(static_cast<std::size_t>(largo));
    try {
        const CabeceraAge ligera = CabeceraAge::lee(guardado);
        if (ligera.factorDeTrabajo() != factorGuardado)
            return std::nullopt;
        Secreto clave = ligera.abre(contrasena);
        if (!cabecera.esSuClave(clave))
            return std::nullopt;
        renueva(llave);
        return clave;
    } catch (const Fallo &) {
        return std::nullopt;
    }
}

void guarda(const CabeceraAge &cabecera, const Secreto &contrasena, const Secreto &clave) {
    const std::string ligera = CabeceraAge::crea(contrasena, factorGuardado, clave);
    // Ours alone until it has its expiry and its permissions: a run that is
    // killed in between takes it along.
    const long llave = syscall(SYS_add_key, clase, nombreDe(cabecera).c_str(), ligera.data(),
                               ligera.size(), KEY_SPEC_PROCESS_KEYRING);
    if (llave < 0 || llaves(KEYCTL_SETPERM, llave, permisos) != 0)
        return;
    renueva(llave);
    llaves(KEYCTL_LINK, llave, deLaSesion());
}

/// Tells a person why nothing happens.
class Espera {
public:
    Espera() {
        if (hayTerminal())
            redibuja("Comprobando la contraseña...");
    }
    Espera(const Espera &) = delete;
    Espera &operator=(const Espera &) = delete;
    ~Espera() { borraRenglon(); }
};

} // namespace

Secreto claveDe(const CabeceraAge &cabecera, const FicheroContrasena &fichero) {
    const Secreto contrasena = leeContrasena(fichero.ruta);
    // A quick derivation is worth neither remembering nor a word.
    if (cabecera.factorDeTrabajo() <= factorGuardado)
        return cabecera.abre(contrasena);
    const bool seRecuerda = fichero.seRecuerda && getenv("ORCALIN_SIN_LLAVERO") == nullptr;
    if (auto clave = seRecuerda ? busca(cabecera, contrasena) : std::nullopt)
        return std::move(*clave);
    const Espera espera;
    Secreto clave = cabecera.abre(contrasena);
    if (seRecuerda)
        guarda(cabecera, contrasena, clave);
    return clave;
}

} // namespace orcalin
