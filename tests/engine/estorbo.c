/* Put before the C library: a system that refuses what a variable names. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <lzma.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>
#include <zstd.h>

#define EL_DE_VERDAD(f) ((__typeof__(&f))dlsym(RTLD_NEXT, #f))

static int niega(int porque) {
    errno = porque;
    return -1;
}

/* ESTORBO_RENOMBRAR=HOW: no rename that spares what is there, nor links unless HOW is "link". */
int renameat2(int de, const char *viejo, int a, const char *nuevo, unsigned como) {
    if (getenv("ESTORBO_RENOMBRAR"))
        return niega(EINVAL);
    return EL_DE_VERDAD(renameat2)(de, viejo, a, nuevo, como);
}

int linkat(int de, const char *viejo, int a, const char *nuevo, int como) {
    const char *como_se_puede = getenv("ESTORBO_RENOMBRAR");
    if (como_se_puede && strcmp(como_se_puede, "link") != 0)
        return niega(EPERM);
    return EL_DE_VERDAD(linkat)(de, viejo, a, nuevo, como);
}

/* Nor, but for "link", a file without a name, which would get one by a link. */
int openat(int carpeta, const char *ruta, int como, ...) {
    const char *como_se_puede = getenv("ESTORBO_RENOMBRAR");
    if (como_se_puede && strcmp(como_se_puede, "link") != 0 && (como & O_TMPFILE) == O_TMPFILE)
        return niega(EOPNOTSUPP);
    va_list demas;
    va_start(demas, como);
    const mode_t permisos = va_arg(demas, mode_t);
    va_end(demas);
    return EL_DE_VERDAD(openat)(carpeta, ruta, como, permisos);
}

/* ESTORBO_VOLCAR: no disk can be flushed as a whole. */
int syncfs(int fd) {
    return getenv("ESTORBO_VOLCAR") ? niega(EIO) : EL_DE_VERDAD(syncfs)(fd);
}

/* ESTORBO_LEER=FROM-TO: these bytes of every file cannot be read. */
ssize_t pread(int fd, void *en, size_t cuantos, off_t donde) {
    long desde = 0, hasta = 0;
    const char *malos = getenv("ESTORBO_LEER");
    if (malos && sscanf(malos, "%ld-%ld", &desde, &hasta) == 2 && donde < hasta) {
        if (donde >= desde)
            return niega(EIO);
        if (donde + (off_t)cuantos > desde)
            cuantos = desde - donde;
    }
    return EL_DE_VERDAD(pread)(fd, en, cuantos, donde);
}

ssize_t pread64(int fd, void *en, size_t cuantos, off_t donde) {
    return pread(fd, en, cuantos, donde);
}

/* ESTORBO_ATRIBUTO=NAME: this attribute cannot be read; ESTORBO_HINCHA: each has so many bytes. */
ssize_t fgetxattr(int fd, const char *cual, void *en, size_t cuantos) {
    const char *malo = getenv("ESTORBO_ATRIBUTO"), *hincha = getenv("ESTORBO_HINCHA");
    if (malo && strcmp(malo, cual) == 0)
        return niega(EIO);
    if (hincha && atol(hincha) <= (long)cuantos) {
        memset(en, 'x', atol(hincha));
        return atol(hincha);
    }
    return EL_DE_VERDAD(fgetxattr)(fd, cual, en, cuantos);
}

/* Whether this is the call, counted by whoever asks, that the variable names. */
static int le_toca(const char *variable, long *llamadas) {
    const char *cual = getenv(variable);
    return cual && atol(cual) == (*llamadas)++;
}

/* ESTORBO_BIT=N: byte N of what is flushed gets another bit afterwards. */
int fsync(int fd) {
    const char *cual = getenv("ESTORBO_BIT");
    const int resultado = EL_DE_VERDAD(fsync)(fd);
    struct stat estado;
    if (!cual || fstat(fd, &estado) != 0 || !S_ISREG(estado.st_mode))
        return resultado;
    char ruta[64];
    snprintf(ruta, sizeof ruta, "/proc/self/fd/%d", fd);
    const int otro = open(ruta, O_RDWR);
    unsigned char octeto = 0;
    if (EL_DE_VERDAD(pread)(otro, &octeto, 1, atol(cual)) == 1) {
        octeto ^= 1U << atol(cual) % 8;
        if (pwrite(otro, &octeto, 1, atol(cual)) != 1)
            abort();
    }
    close(otro);
    return resultado;
}

/* ESTORBO_CORTA=N: the last byte of the Nth long write is lost without a word. */
ssize_t write(int fd, const void *que, size_t cuantos) {
    static long llamadas;
    const int corta = fd > 2 && cuantos >= 100 && le_toca("ESTORBO_CORTA", &llamadas);
    const ssize_t escritos = EL_DE_VERDAD(write)(fd, que, cuantos - corta);
    return escritos < 0 ? escritos : escritos + corta;
}

/* ESTORBO_COMPRIME=N: the Nth call compresses something else. */
static unsigned char *otros(const void *que, size_t cuantos) {
    unsigned char *copia = malloc(cuantos);
    memcpy(copia, que, cuantos);
    copia[cuantos / 2] ^= 4U;
    return copia;
}

size_t ZSTD_compressStream2(ZSTD_CCtx *contexto, ZSTD_outBuffer *sale, ZSTD_inBuffer *entra,
                            ZSTD_EndDirective como) {
    static long llamadas;
    if (entra->pos == entra->size || !le_toca("ESTORBO_COMPRIME", &llamadas))
        return EL_DE_VERDAD(ZSTD_compressStream2)(contexto, sale, entra, como);
    unsigned char *falso = otros(entra->src, entra->size);
    ZSTD_inBuffer otro = {falso, entra->size, entra->pos};
    const size_t resultado = EL_DE_VERDAD(ZSTD_compressStream2)(contexto, sale, &otro, como);
    entra->pos = otro.pos;
    free(falso);
    return resultado;
}

lzma_ret lzma_code(lzma_stream *flujo, lzma_action accion) {
    static long llamadas;
    if (flujo->avail_in == 0 || !le_toca("ESTORBO_COMPRIME", &llamadas))
        return EL_DE_VERDAD(lzma_code)(flujo, accion);
    const unsigned char *bueno = flujo->next_in;
    unsigned char *falso = otros(bueno, flujo->avail_in);
    flujo->next_in = falso;
    const lzma_ret resultado = EL_DE_VERDAD(lzma_code)(flujo, accion);
    flujo->next_in = bueno + (flujo->next_in - falso);
    free(falso);
    return resultado;
}
