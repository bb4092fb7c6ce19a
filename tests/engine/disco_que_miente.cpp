// Loaded before the engine's own libraries (LD_PRELOAD), a disk and a compression that err without
// a word; MENTIRA says how: «bit:N» flips a bit of byte N of the file once it is flushed, «corta:N»
// loses the last byte of the Nth long write, «comprime:N» compresses something else in the Nth call.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <lzma.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <zstd.h>

namespace {

/// The number, if that is the lie of the day; else -1.
long miente(const char *como) {
    const char *mentira = getenv("MENTIRA");
    const auto largo = strlen(como);
    return mentira != nullptr && strncmp(mentira, como, largo) == 0 && mentira[largo] == ':'
               ? atol(mentira + largo + 1)
               : -1;
}

bool tocaYa(const char *como, long &llamadas) {
    return miente(como) == llamadas++;
}

template<typename F>
F verdadera(const char *nombre) {
    return reinterpret_cast<F>(dlsym(RTLD_NEXT, nombre));
}

std::vector<unsigned char> otros(const void *datos, std::size_t largo) {
    const auto *bytes = static_cast<const unsigned char *>(datos);
    std::vector<unsigned char> copia(bytes, bytes + largo);
    copia[largo / 2] ^= 4U;
    return copia;
}

} // namespace

extern "C" int fsync(int fd) {
    const int resultado = verdadera<int (*)(int)>("fsync")(fd);
    struct stat estado {};
    if (miente("bit") < 0 || fstat(fd, &estado) != 0 || !S_ISREG(estado.st_mode))
        return resultado;
    char ruta[64];
    (void)snprintf(ruta, sizeof ruta, "/proc/self/fd/%d", fd);
    const int otro = open(ruta, O_RDWR);
    const off_t donde = miente("bit") % estado.st_size;
    unsigned char byte = 0;
    if (pread(otro, &byte, 1, donde) == 1) {
        byte ^= static_cast<unsigned char>(1U << (donde % 8));
        (void)pwrite(otro, &byte, 1, donde);
    }
    close(otro);
    return resultado;
}

extern "C" ssize_t write(int fd, const void *datos, std::size_t largo) {
    static long llamadas = 0;
    const auto escribe = verdadera<ssize_t (*)(int, const void *, std::size_t)>("write");
    if (fd <= 2 || largo < 100 || !tocaYa("corta", llamadas))
        return escribe(fd, datos, largo);
    (void)escribe(fd, datos, largo - 1);
    return static_cast<ssize_t>(largo);
}

extern "C" std::size_t ZSTD_compressStream2(ZSTD_CCtx *contexto, ZSTD_outBuffer *sale,
                                            ZSTD_inBuffer *entra, ZSTD_EndDirective como) {
    static long llamadas = 0;
    const auto comprime = verdadera<decltype(&ZSTD_compressStream2)>("ZSTD_compressStream2");
    if (entra->pos == entra->size || !tocaYa("comprime", llamadas))
        return comprime(contexto, sale, entra, como);
    const auto falso = otros(entra->src, entra->size);
    ZSTD_inBuffer otro{falso.data(), falso.size(), entra->pos};
    const auto resultado = comprime(contexto, sale, &otro, como);
    entra->pos = otro.pos;
    return resultado;
}

extern "C" lzma_ret lzma_code(lzma_stream *flujo, lzma_action accion) {
    static long llamadas = 0;
    const auto codifica = verdadera<decltype(&lzma_code)>("lzma_code");
    if (flujo->avail_in == 0 || !tocaYa("comprime", llamadas))
        return codifica(flujo, accion);
    const auto *bueno = flujo->next_in;
    const auto falso = otros(bueno, flujo->avail_in);
    flujo->next_in = falso.data();
    const auto resultado = codifica(flujo, accion);
    flujo->next_in = bueno + (flujo->next_in - falso.data());
    return resultado;
}
