"""What goes in comes out, whoever takes it out."""

import os
import random
import re
import struct

from motor import Caso, MEBI, NADIE, age
from huellas import diferencias, siembra

MARCO = 16 * MEBI
TROZO = 64 * 1024


class IdaYVuelta(Caso):
    def setUp(self):
        super().setUp()
        self.raiz = self.c / "álbum"
        siembra(os.fsencode(self.raiz))
        for nombre in ("--file", "detrás ", "x" * 255, "l\u2028\u0085s", "Error: contraseña"):
            self.pon(self.raiz / nombre, nombre)
        self.pon(self.raiz / "/".join(["carpeta de nombre largo"] * 12) / "ñandú", "hondo")
        os.symlink("carpetas", self.raiz / "a carpeta")
        for nombre in ("nota", "ñ", "\xf1 b\n", "ú"):
            os.setxattr(self.raiz / "privado", "user." + nombre, b"uno\0dos" + os.fsencode(nombre))
        os.chmod(self.raiz / "programa", 0o4755)
        for nombre, hora in (("privado", -1_000000000), ("programa", 1), ("enlace", 0),
                             ("solo lectura", 4_000_000_000_000000001)):
            os.utime(self.raiz / nombre, ns=(0, hora), follow_symlinks=False)
        os.chmod(self.raiz / "carpetas", 0o555)

    def compara(self, fuera):
        self.assertEqual(diferencias(self.raiz, fuera / self.raiz.name), [])

    def con_shell(self, orden):
        self.sh(orden, self.d / "fuera")
        self.compara(self.d / "fuera")

    def test_extract_y_bsdtar(self):
        self.comprime(f"{self.raiz}//")
        self.compara(self.extrae())
        self.compara(self.extrae())  # onto what is there already
        self.con_shell('bsdtar -xpf "$1"')

    def test_cifrado_y_age_y_bsdtar(self):
        self.comprime(self.raiz, *self.en_clave)
        self.assertNotIn(b"lbum", self.okz.read_bytes())
        self.compara(self.extrae(*self.con))
        claro = self.d / "claro.okz"
        self.assertEqual(age(["-d", "-o", claro, self.okz], self.clave.read_text()), 0)
        self.okz = claro
        self.con_shell('bsdtar -xpf "$1"')

    def test_zstd_y_tar(self):
        # tar makes links that lead elsewhere when all else is done, and so gives
        # their folders a new time.
        os.unlink(self.raiz / "enlace roto")
        for nombre, hora in (("privado", -2_000000001), ("programa", -315521754_750000000), (".", 5)):
            os.utime(self.raiz / nombre, ns=(0, hora))  # bsdtar takes the first two for others
        self.comprime(self.raiz)
        self.compara(self.extrae())
        self.con_shell('zstd -dc "$1" | tar --xattrs --warning=none -xp')

    def test_lo_que_otros_escriben(self):
        self.sh('tar --format=pax --xattrs --zstd -cf "$1" .', self.c)
        self.assertNotIn(".", self.lista())
        otro = self.d / "otro.age"
        self.assertEqual(age(["-p", "-o", otro, self.okz], self.clave.read_text()), 0)
        self.okz = otro
        self.compara(self.extrae(*self.con))


class Fiel(Caso):
    def ida_y_vuelta(self):
        self.comprime(self.c)
        self.corre("check", self.okz)
        self.assertEqual(diferencias(self.c, self.extrae() / "c"), [])

    def test_huecos(self):
        sitios = {"hueco": (), "medio": (2**31 + 5,), "bordes": (0, 2**33 - 1)}
        for nombre, letras in sitios.items():
            with open(self.c / nombre, "wb") as f:
                f.truncate(2**33)
                for letra in letras:
                    f.seek(letra)
                    f.write(b"x")
        self.comprime(self.c)
        self.assertEqual(self.lista()["c/hueco"][2], 2**33)
        self.corre("check", self.okz)
        self.sh('zstd -dc "$1" | tar -x', self.d / "tar")
        for salida in (self.extrae(), self.d / "tar", self.extrae("--file", "c", a="otra")):
            for nombre, letras in sitios.items():
                e = (salida / "c" / nombre).stat()
                self.assertEqual((e.st_size, e.st_mtime_ns), (2**33, (self.c / nombre).stat().st_mtime_ns))
                self.assertLess(e.st_blocks, 100)
                with open(salida / "c" / nombre, "rb") as f:
                    for letra in letras:
                        f.seek(letra)
                        self.assertEqual(f.read(1), b"x")

    def test_de_root(self):
        como = self.como_nadie()
        for nombre in ("ajeno", "capaz", "listado"):
            self.pon(f"c/{nombre}", nombre)
        os.symlink("x", self.c / "enlace")
        (self.c / "carpeta").mkdir()
        for nombre in ("ajeno", "enlace", "carpeta"):
            os.chown(self.c / nombre, 12345, 23456, follow_symlinks=False)
        os.chmod(self.c / "ajeno", 0o6755)
        os.chmod(self.c / "carpeta", 0o3777)
        lista = struct.pack("<I" + "HHI" * 5, 2, 1, 6, 2**32 - 1, 2, 4, 12345, 4, 4, 2**32 - 1,
                            16, 6, 2**32 - 1, 32, 0, 2**32 - 1)
        for nombre, atributo, valor in (
                ("capaz", "security.capability", struct.pack("<5I", 0x02000001, 0x400, 0, 0, 0)),
                ("listado", "system.posix_acl_access", lista),
                ("carpeta", "system.posix_acl_default", lista), ("carpeta", "trusted.nota", b"x")):
            os.setxattr(self.c / nombre, atributo, valor)
        os.removexattr(self.pon("c/carpeta/heredero"), "system.posix_acl_access")
        self.ida_y_vuelta()
        self.corre("check", self.okz)
        for ruta in self.c.rglob("*"):
            e, s = ruta.lstat(), (self.salida / ruta.relative_to(self.d)).lstat()
            self.assertEqual((e.st_uid, e.st_gid), (s.st_uid, s.st_gid), ruta)
        ajeno = (self.extrae(a="nadie", **como) / "c/ajeno").stat()
        self.assertEqual((ajeno.st_mode & 0o7777, ajeno.st_uid), (0o755, NADIE))

    def test_sobre_carpetas_cerradas(self):
        como = self.como_nadie()
        self.pon("c/a/b/f", "uno")
        os.chmod(self.c / "a/b", 0o555)
        os.chmod(self.c / "a", 0)
        self.comprime(self.c)
        for _ in range(2):
            self.assertEqual(diferencias(self.c, self.extrae(**como) / "c"), [])

    def test_muchas_carpetas_y_muy_hondas(self):
        for n in range(450):  # more than are kept open
            self.pon(f"c/d{n}/f", str(n))
        self.pon("c/" + "/".join(f"nivel{n}" for n in range(450)) + "/f", "hondo")
        self.ida_y_vuelta()

    def test_rutas_que_el_sistema_no_toma(self):
        """Of more than 4,096 bytes; and of more than any reader takes."""
        nombre, fd = "n" * 240, os.open(self.c, os.O_RDONLY)
        for n in range(80):
            os.mkdir(nombre, dir_fd=fd)
            madre, fd = fd, os.open(nombre, os.O_RDONLY, dir_fd=fd)
            os.close(madre)
            if n == 30:
                os.close(os.open("f", os.O_CREAT, dir_fd=fd))
        os.close(fd)
        mensaje = self.error("compress", self.c, "-o", self.okz)
        self.assertRegex(mensaje, f"1 elemento .*no se puede guardar «{self.c}/n.*…».*demasiado largo")
        self.assertEqual(sorted(self.lista())[-1], "c" + f"/{nombre}" * 67)
        fuera = os.open(self.extrae() / "c", os.O_RDONLY)
        for _ in range(31):
            fuera = os.open(nombre, os.O_RDONLY, dir_fd=fuera)
        self.assertEqual(set(os.listdir(fuera)), {nombre, "f"})


class Fronteras(Caso):
    def ida_y_vuelta(self, cuantos, *opciones, ceros=0, nivel="1"):
        # The same bytes and time in every run, so that sizes can be foreseen.
        fichero = self.pon("f", random.Random(7).randbytes(cuantos) + bytes(ceros))
        os.utime(fichero, (1e9, 1e9))
        self.comprime(fichero, *opciones, nivel=nivel)
        self.assertEqual((self.extrae("--replace", *self.con) / "f").read_bytes(), fichero.read_bytes(), cuantos)

    def carga(self, cuantos, ceros=20_000):
        """Bytes of plaintext in the encrypted archive of a file of so many."""
        # The zeros give the content an end that does not fall in with tar's own.
        self.ida_y_vuelta(cuantos, *self.en_clave, ceros=ceros, nivel="19")
        datos = self.okz.read_bytes()
        cifrados = len(datos) - re.search(rb"\n--- .*\n", datos).end() - 16
        return cifrados - 16 * -(-cifrados // (TROZO + 16))

    def test_trozos_del_cifrado(self):
        for frontera in (TROZO, 3 * TROZO):
            cerca = 2 * frontera - 500 - self.carga(frontera - 500)
            faltan = {frontera - 1, frontera, frontera + 1}
            # A byte more is about a byte more: what the index is compressed to depends on the sum in it,
            # which is another with every zero behind.
            for ceros in range(20_000, 20_100):
                faltan -= {self.carga(cerca + n, ceros) for n in range(-4, 5)} if faltan else set()
            self.assertEqual(faltan, set(), frontera)

    def test_marcos(self):
        for cuantos in (MARCO - 2048, MARCO - 1024, MARCO, MARCO + 1):
            self.ida_y_vuelta(cuantos)
        marcos = self.sh('zstd -lv "$1"', self.d).stdout.decode()
        self.assertIn("# Zstandard Frames: 2", marcos)
        self.assertIn("Check: XXH64", marcos)

    def test_max_es_menor_y_lo_leen_todos(self):
        lejos = bytes(random.Random(7).choices(b"abcdefgh", k=2 * TROZO))
        fichero = self.pon("f", lejos + bytes(18 * MEBI) + lejos)
        self.comprime(fichero, nivel="19")
        normal = self.okz.stat().st_size
        self.comprime(fichero, "--max", nivel=None)
        self.assertLess(self.okz.stat().st_size, 0.6 * normal)
        self.assertEqual((self.extrae("--file", "f") / "f").read_bytes(), fichero.read_bytes())
        self.sh('xz -tq "$1" && bsdtar -xf "$1"', self.d / "fuera")
        self.assertEqual((self.d / "fuera/f").read_bytes(), fichero.read_bytes())
