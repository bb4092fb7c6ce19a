// Feeds the reader with any bytes: lists, checks and takes everything out, and
// ends the process if something came out where it should not.
#include "comun/avisos.h"
#include "comun/fallo.h"
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

void saca(const char *pedida) {
    const orcalin::Archivo abierto(archivo, {});
    orcalin::Avisos avisos;
    orcalin::Extraccion(abierto, pedida, avisos).saca();
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

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *datos, std::size_t largo) {
    std::ofstream(archivo, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char *>(datos), static_cast<std::streamsize>(largo));
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
