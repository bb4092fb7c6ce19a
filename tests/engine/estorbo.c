/* Put before the C library: a system that refuses what a variable names. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>

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

/* ESTORBO_ATRIBUTO=NAME: this attribute cannot be read. */
ssize_t fgetxattr(int fd, const char *cual, void *en, size_t cuantos) {
    const char *malo = getenv("ESTORBO_ATRIBUTO");
    if (malo && strcmp(malo, cual) == 0)
        return niega(EIO);
    return EL_DE_VERDAD(fgetxattr)(fd, cual, en, cuantos);
}
