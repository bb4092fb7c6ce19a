#include "empaque/clases.h"

#include "comun/medidas.h"
#include "flujo/compresor.h"
#include "flujo/descriptor.h"

#include <algorithm>
#include <array>
#include <elf.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orcalin {
namespace {

using namespace std::string_view_literals;

constexpr std::array comprimidas{
    "7z"sv,   "aac"sv,  "apk"sv,  "avi"sv,   "avif"sv, "br"sv,   "bz2"sv, "crx"sv,  "deb"sv,
    "docx"sv, "epub"sv, "flac"sv, "gif"sv,   "gz"sv,   "heic"sv, "jar"sv, "jpeg"sv, "jpg"sv,
    "jxl"sv,  "lz4"sv,  "lzma"sv, "m4a"sv,   "m4v"sv,  "mkv"sv,  "mov"sv, "mp3"sv,  "mp4"sv,
    "mpeg"sv, "mpg"sv,  "odp"sv,  "ods"sv,   "odt"sv,  "ogg"sv,  "ogv"sv, "okz"sv,  "opus"sv,
    "png"sv,  "pptx"sv, "rar"sv,  "rpm"sv,   "svgz"sv, "tgz"sv,  "txz"sv, "webm"sv, "webp"sv,
    "whl"sv,  "wmv"sv,  "woff"sv, "woff2"sv, "xlsx"sv, "xz"sv,   "zip"sv, "zst"sv};
constexpr std::array binarias{"bmp"sv, "db"sv,     "img"sv, "iso"sv, "mo"sv,   "pyc"sv, "qm"sv,
                              "raw"sv, "sqlite"sv, "tar"sv, "tif"sv, "tiff"sv, "ttf"sv, "wav"sv};
static_assert(std::is_sorted(comprimidas.begin(), comprimidas.end()));

/// What follows the last dot of the path's last component, in lower case;
/// empty for a name that has none, or only a leading one.
std::string extension(std::string_view ruta) {
    const auto nombre = ruta.substr(ruta.rfind('/') + 1);
    const auto punto = nombre.rfind('.');
    if (punto == std::string_view::npos || punto == 0)
        return {};
    std::string cual(nombre.substr(punto + 1));
    std::transform(cual.begin(), cual.end(), cual.begin(), [](unsigned char letra) {
        return static_cast<char>(letra >= 'A' && letra <= 'Z' ? letra + ('a' - 'A') : letra);
    });
    return cual;
}

Trato porMaquina(unsigned maquina) {
    switch (maquina) {
    case EM_386:
    case EM_X86_64:
        return Trato::x86;
    case EM_AARCH64:
        return Trato::arm64;
    case EM_ARM:
        return Trato::arm;
    default:
        return Trato::otro;
    }
}

Descriptor abre(int carpeta, const std::string &nombre) {
    constexpr int modo = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    return Descriptor(openat(carpeta, nombre.c_str(), modo));
}

/// Whether pieces from all over a file get smaller. What cannot be read is for
/// the one who packs it to find.
bool encogePorMuestras(const Descriptor &fd, std::uint64_t bytes) {
    constexpr std::size_t muestras = 8;
    constexpr std::size_t largo = 8 * kibi;
    std::vector<unsigned char> junto(muestras * largo);
    for (std::size_t i = 0; i < muestras; ++i) {
        const auto donde = (bytes - largo) / (muestras - 1) * i;
        if (pread(fd.numero(), junto.data() + i * largo, largo, static_cast<off_t>(donde)) !=
            static_cast<ssize_t>(largo))
            return true;
    }
    return encoge(junto);
}

/// Text has no zero bytes; machine code says for which machine.
Trato porContenido(const Descriptor &fd) {
    std::array<unsigned char, 512> inicio{};
    const ssize_t leidos = fd.valido() ? read(fd.numero(), inicio.data(), inicio.size()) : 0;
    if (leidos <= 0)
        return Trato::otro;
    constexpr std::size_t maquina = 18; // of either width, in the machine's own byte order
    const std::string_view texto(reinterpret_cast<const char *>(inicio.data()),
                                 static_cast<std::size_t>(leidos));
    if (texto.starts_with(ELFMAG) && texto.size() > maquina + 1)
        return porMaquina(inicio[maquina] + 256U * inicio[maquina + 1]);
    if (texto.starts_with("MZ"))
        return Trato::x86;
    return texto.find('\0') == std::string_view::npos ? Trato::texto : Trato::otro;
}

} // namespace

Trato tratoDe(int carpeta, const std::string &propio, const std::string &ruta, mode_t modo,
              std::uint64_t bytes) {
    // From here on a high level that tries in vain is felt.
    constexpr std::uint64_t grande = mebi;
    const std::string cual = extension(ruta);
    if (std::binary_search(comprimidas.begin(), comprimidas.end(), cual) ||
        (bytes >= grande && !encogePorMuestras(abre(carpeta, propio), bytes)))
        return Trato::comprimido;
    if (std::find(binarias.begin(), binarias.end(), cual) != binarias.end())
        return Trato::otro;
    // Opening every one of many small files would be felt; their names tell
    // enough, and a shared library's name may end in its version.
    const bool programa = (modo & 0111U) != 0 || ruta.find(".so") != std::string::npos ||
                          cual == "o" || cual == "a" || cual == "ko" || cual == "dll" ||
                          cual == "bin" || cual == "dat" || cual.empty();
    return programa ? porContenido(abre(carpeta, propio)) : Trato::texto;
}

} // namespace orcalin
