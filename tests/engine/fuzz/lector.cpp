// Feeds the reader with any bytes, or with what formas.h makes of them, as the
// variable ORCALIN_FUZZ says: lists, checks and takes everything out, and ends the
// process if something came out where it should not, or if what the user had there
// is not as it was.
#include "comun/avisos.h"
#include "comun/fallo.h"
#include "formas.h"
#include "ordenes/ordenes.h"
#include "saque/extraccion.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr rlim_t ficheroMayor = 1U << 20U; // bytes: a bomb must not fill the disk
constexpr const char *archivo = "../a.okz";
constexpr const char *dentro = "dentro";

/// Folders may have come out without any rights.
void vacia() {
    for (const auto &hallado : fs::recursive_directory_iterator(".")) {
        if (hallado.symlink_status().type() == fs::file_type::directory)
            fs::permissions(hallado, fs::perms::owner_all);
    }
    for (const auto &hallado : fs::directory_iterator("."))
        fs::remove_all(hallado);
}

void compruebaFuera() {
    if (std::distance(fs::directory_iterator(".."), {}) != 2) // the archive and the folder
        abort();
}

std::string contenido(const fs::path &ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(fichero), {}};
}

void planta() {
    std::ofstream("mio") << "mio";
    mkdir("carpeta", 0700);
    std::ofstream("carpeta/propio") << "propio";
    fs::create_symlink("..", "enlace");
}

/// None of what was planted is lost or more open than it was.
void compruebaLoPlantado() {
    struct stat estado {};
    if (contenido("mio") != "mio" || contenido("carpeta/propio") != "propio" ||
        fs::read_symlink("enlace") != ".." || stat("carpeta", &estado) != 0 ||
        (estado.st_mode & 07777) != 0700)
        abort();
}

void saca(const char *pedida) {
    const orcalin::Archivo abierto(archivo, {});
    orcalin::Avisos avisos;
    orcalin::Extraccion(abierto, pedida, avisos).saca();
    avisos.remata("sacar");
}

template<typename Orden>
void intenta(Orden orden) {
    try {
        orden();
    } catch (const orcalin::Fallo &) {
    } catch (const std::bad_alloc &) {
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/) {
    // What it is looking for is a way out of its folder.
    if (geteuid() == 0) {
        (void)fputs("not as root\n", stderr);
        exit(1);
    }
    static std::string carpeta = (fs::temp_directory_path() / "okz-XXXXXX").string();
    if (mkdtemp(carpeta.data()) == nullptr || chdir(carpeta.c_str()) != 0 ||
        mkdir(dentro, 0700) != 0 || chdir(dentro) != 0)
        exit(1);
    const rlimit tope{ficheroMayor, ficheroMayor};
    setrlimit(RLIMIT_FSIZE, &tope);
    (void)signal(SIGXFSZ, SIG_IGN);
    return 0;
}

namespace {

void escribe(orcalin::Octetos datos) {
    std::ofstream(archivo, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char *>(datos.data()),
               static_cast<std::streamsize>(datos.size()));
}

/// Twice, since what the first time brought is the user's the second time.
void sacaSobreLoPlantado() {
    planta();
    for (int vez = 0; vez < 2; ++vez) {
        intenta([] { saca(""); });
        compruebaLoPlantado();
    }
    compruebaFuera();
    vacia();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *datos, std::size_t largo) {
    const char *variable = getenv("ORCALIN_FUZZ");
    const std::string_view que = variable == nullptr ? "archivo" : variable;
    const orcalin::Octetos bytes(datos, largo);
    if (que == "cifrado") {
        intenta([bytes] { leeCifrado(bytes); });
        return 0;
    }
    if (que == "entradas") {
        escribe(archivoDeEntradas(bytes));
        sacaSobreLoPlantado();
        return 0;
    }
    if (que == "indice")
        escribe(archivoConIndice(bytes));
    else
        escribe(bytes);
    // One thing at a time, chosen by the length, which changes all the time:
    // each opens the archive, with all that goes with it.
    switch (largo % 4) {
    case 0:
        intenta([] { orcalin::lista({archivo, {}}); });
        break;
    case 1:
        intenta([] { orcalin::comprueba({archivo, {}}); });
        break;
    case 2:
        intenta([] { saca(""); });
        break;
    default:
        intenta([] { saca("b/c"); });
        intenta([] { saca("a"); });
    }
    compruebaFuera();
    vacia();
    return 0;
}
