"""Trees of files: one with everything that names and kinds can hold against a
program, and the comparison of two trees."""

import hashlib
import os
import stat

# Far enough apart, and with fractions that a clock of seconds would lose.
HACE_TIEMPO = 1_234_567_890_123_456_789
UN_RATO = 86_400_000_000_000

RAROS = (
    b"con espacios",
    b"salto\nde l\xc3\xadnea",
    b"comillas \"dobles\" 'simples' `graves`",
    b"-guion delante",
    b"no es UTF-8 \xe1\xff",
    "canción compuesta".encode(),
    "cancio\u0301n descompuesta".encode(),
    b"#100% & ?x=1;\\",
    b".oculto",
)


def siembra(raiz):
    """Makes a tree of odd things at `raiz` (bytes)."""
    os.makedirs(raiz)
    for i, nombre in enumerate(RAROS):
        _escribe(raiz + b"/" + nombre, nombre * (i * 500), 0o644)
    _escribe(raiz + b"/solo lectura", b"no me toques", 0o444)
    _escribe(raiz + b"/programa", b"#!/bin/sh\n", 0o755)
    _escribe(raiz + b"/privado", os.urandom(300_000), 0o600)
    os.makedirs(raiz + b"/carpeta vac\xc3\xada")
    for nombre in RAROS:
        os.makedirs(raiz + b"/carpetas/" + nombre)
        _escribe(raiz + b"/carpetas/" + nombre + b"/dentro", nombre, 0o640)
    os.symlink(b"con espacios", raiz + b"/enlace")
    os.symlink(b"/no/existe \xff", raiz + b"/enlace roto")
    os.link(raiz + b"/privado", raiz + b"/otro nombre de privado")
    os.chmod(raiz + b"/carpeta vac\xc3\xada", 0o750)
    _envejece(raiz)


def _escribe(ruta, contenido, modo):
    with open(ruta, "wb") as fichero:
        fichero.write(contenido)
    os.chmod(ruta, modo)


def _envejece(raiz):
    for i, ruta in enumerate(sorted(_rutas(raiz), reverse=True)):
        cuando = HACE_TIEMPO + i * UN_RATO + i
        os.utime(ruta, ns=(cuando, cuando), follow_symlinks=False)


def _rutas(raiz):
    yield raiz
    for carpeta, carpetas, ficheros in os.walk(raiz):
        for nombre in carpetas + ficheros:
            yield os.path.join(carpeta, nombre)


def _contenido(ruta, modo):
    if stat.S_ISLNK(modo):
        return os.readlink(ruta)
    if not stat.S_ISREG(modo):
        return b""
    with open(ruta, "rb") as fichero:
        return hashlib.file_digest(fichero, "sha256").digest()


def huella(raiz):
    """{path below the root: (kind and mode, mtime in ns, content or target, the
    first name of the same file, extended attributes)}."""
    raiz = os.fsencode(raiz)
    todas, primeros = {}, {}
    for ruta in sorted(_rutas(raiz)):
        dato = os.lstat(ruta)
        corta = os.path.relpath(ruta, raiz)
        todas[corta] = (oct(dato.st_mode), dato.st_mtime_ns, _contenido(ruta, dato.st_mode),
                        primeros.setdefault((dato.st_dev, dato.st_ino), corta),
                        {atributo: os.getxattr(ruta, atributo, follow_symlinks=False)
                         for atributo in os.listxattr(ruta, follow_symlinks=False)})
    return todas


def diferencias(una, otra):
    """What differs between two trees, one line each."""
    a, b = huella(una), huella(otra)
    return [f"{ruta!r}: {a.get(ruta)} / {b.get(ruta)}"
            for ruta in sorted(a.keys() | b.keys()) if a.get(ruta) != b.get(ruta)]
