"""Archives to begin with: semillas.py FOLDER. Frames hold raw blocks without a
checksum, so that a byte changed here is a byte changed in what they hold."""

import hashlib
import io
import os
import pathlib
import struct
import sys
import tarfile
import zlib

SALTABLE = 0x184D2A50
REGISTRO = b"50 comment=OKZindex 2: an index ends this archive\n"
INCOMPLETA, CON_MAS = 0o10000, 0o20000


def marco(datos):
    """A zstd frame of raw blocks that says how long it is."""
    salida = bytearray(struct.pack("<IBQ", 0xFD2FB528, 0xE0, len(datos)))
    trozos = [datos[i:i + 4096] for i in range(0, len(datos), 4096)] or [b""]
    for i, trozo in enumerate(trozos):
        cabecera = len(trozo) << 3 | (i == len(trozos) - 1)
        salida += struct.pack("<I", cabecera)[:3] + trozo
    return bytes(salida)


def relleno(n):
    """A frame that decoders skip, of a length that leaves the rest `n` of four."""
    return struct.pack("<II", SALTABLE, n) + bytes(n) if n else b""


def variable(n):
    octetos = bytearray()
    while n >= 0x80:
        octetos.append(n & 0x7F | 0x80)
        n >>= 7
    return bytes(octetos + bytes([n]))


def suma(datos):
    return hashlib.blake2b(datos, digest_size=32).digest()


def marca():
    """What the stream of an archive with an index begins with."""
    ficha = tarfile.TarInfo("OKZindex")
    ficha.type, ficha.size = tarfile.XGLTYPE, len(REGISTRO)
    return ficha.tobuf(tarfile.USTAR_FORMAT) + REGISTRO.ljust(512, b"\0")


def tar(entradas, formato=tarfile.PAX_FORMAT, version=1):
    """The stream, and for each entry what the index says of it."""
    datos, fichas, lugares, bytes_ = io.BytesIO(), [], {}, {}
    datos.write(marca() if version > 1 else b"")
    with tarfile.open(fileobj=datos, mode="w", format=formato) as t:
        for nombre, tipo, contenido in entradas:
            ficha = tarfile.TarInfo(nombre)
            ficha.type, ficha.mode, ficha.mtime = tipo, 0o755, 1.5
            cuerpo = contenido.encode() if tipo == tarfile.REGTYPE else b""
            ficha.size = len(cuerpo)
            if tipo in (tarfile.SYMTYPE, tarfile.LNKTYPE):
                ficha.linkname = contenido
            lugares[nombre] = t.offset if fichas else 0
            letra = {tarfile.DIRTYPE: b"d", tarfile.SYMTYPE: b"l", tarfile.LNKTYPE: b"h"}.get(tipo, b"-")
            bytes_[nombre] = bytes_.get(contenido, 0) if letra == b"h" else len(cuerpo)
            fichas.append((nombre.encode(), letra, bytes_[nombre], lugares[nombre],
                           lugares.get(contenido)))
            t.addfile(ficha, io.BytesIO(cuerpo))
    return datos.getvalue(), fichas


def indice(trozos, marcos, fichas, version, marcas=0):
    """`marcas`: what every entry has beside its permissions."""
    salida = variable(len(marcos))
    for trozo, m in zip(trozos, marcos):
        salida += variable(len(m)) + variable(len(trozo)) + (suma(trozo) if version > 1 else b"")
    anterior, previsto = b"", 512
    for ruta, letra, bytes_, lugar, enlazado in sorted(fichas):
        comunes = len(os.path.commonprefix((ruta, anterior)))
        paso = lugar - previsto
        salida += variable(comunes) + variable(len(ruta) - comunes) + ruta[comunes:] + letra
        salida += b"".join(map(variable, (0o755 | marcas, bytes_, 2 * paso if paso >= 0 else -2 * paso - 1)))
        salida += variable(enlazado or 0) if letra == b"h" else b""
        salida += b"\4para" if marcas & CON_MAS else b""
        anterior, previsto = ruta, lugar + 512 + (bytes_ + 511) // 512 * 512 * (letra == b"-")
    return salida


def archivo(entradas, corte=2048, cambia=lambda claro: claro, version=2, marcas=0, **mentiras):
    """Its index goes through `cambia`, and its label says what `mentiras` have it say."""
    crudo, fichas = tar(entradas, version=version)
    trozos = [crudo[i:i + corte] for i in range(0, len(crudo), corte)]
    marcos = [marco(t) for t in trozos]
    claro = cambia(indice(trozos, marcos, fichas, version, marcas))
    dentro = marco(claro)
    cuerpo = b"".join(marcos)
    dicho = {"lugar": len(cuerpo), "largo": len(dentro) + 8, "crudo": len(claro),
             "cuantas": len(fichas), "tar": len(crudo), **mentiras}
    rotulo = b"OKZindex" + struct.pack("<IIQQQQQ", version, 0, *dicho.values())
    rotulo += (suma(claro) if version > 1 else b"") + bytes(4)
    rotulo += struct.pack("<I", zlib.crc32(rotulo))
    return (cuerpo + struct.pack("<II", SALTABLE, len(dentro)) + dentro +
            struct.pack("<II", SALTABLE, len(rotulo)) + rotulo)


def entradas(n):
    return [("b", tarfile.DIRTYPE, ""), ("a", tarfile.REGTYPE, "hola" * 700),
            ("b/c", tarfile.LNKTYPE, "a"), ("b/d", tarfile.SYMTYPE, "../a"),
            ("b/ñ" + "x" * (120 + n), tarfile.REGTYPE, "ñ")]


def hostiles(n):
    return [("../fuera", tarfile.REGTYPE, "x"), ("/fuera", tarfile.REGTYPE, "x"),
            ("e", tarfile.SYMTYPE, ".."), ("e/fuera", tarfile.REGTYPE, "x"),
            ("f", tarfile.LNKTYPE, "../a.okz"), ("f", tarfile.REGTYPE, "x" * n),
            ("d" * (1 + n), tarfile.FIFOTYPE, "")]


def semillas(n):
    return {
        "entera": archivo(entradas(n)),
        "primera": archivo(entradas(n), version=1),
        "con_marcas": archivo(entradas(n), marcas=CON_MAS | INCOMPLETA),
        "un_marco": archivo(entradas(n), 1 << 20),
        "hostil": archivo(hostiles(n)),
        "sin_indice": relleno(n) + marco(tar(entradas(0))[0]),
        "gnu": relleno(n) + marco(tar(entradas(0), tarfile.GNU_FORMAT)[0]),
        "cifrada": b"age-encryption.org/v1\n-> scrypt bm9ub25vbm9ub25vbm9ubw 10\n" +
                   b"A" * 43 + b"\n--- " + b"A" * 43 + b"\n" + bytes(100 + n),
    }


if __name__ == "__main__":
    for resto in range(4):  # what is done with an archive depends on its length
        for nombre, datos in semillas(resto).items():
            (pathlib.Path(sys.argv[1]) / f"{nombre}{resto}").write_bytes(datos)
