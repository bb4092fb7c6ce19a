"""What goes in comes out, whoever takes it out."""

import math
import os
import random
import re
import struct
import subprocess
import unittest

from motor import Caso, ESCASO, NADIE, age, foto, siembra

MARCO = 16 * 1024 * 1024
TROZO = 64 * 1024


class IdaYVuelta(Caso):
    def setUp(self):
        super().setUp()
        self.dentro = self.d / "dentro"
        self.raiz = self.dentro / "álbum"
        siembra(self.raiz)
        self.antes = foto(self.dentro)

    def compara(self, fuera):
        despues = foto(fuera)
        self.assertEqual(self.antes.keys(), despues.keys())
        for ruta, ficha in self.antes.items():
            self.assertEqual(ficha, despues[ruta], ruta)

    def con_shell(self, orden):
        fuera = self.d / "fuera"
        fuera.mkdir()
        subprocess.run(["sh", "-c", orden, "sh", self.okz], cwd=fuera, check=True,
                       capture_output=True)
        self.compara(fuera)

    def test_extract(self):
        self.comprime(f"{self.raiz}//")
        self.compara(self.extrae())
        self.compara(self.extrae())  # onto what is there already

    def test_extract_cifrado(self):
        self.cifra(self.raiz)
        self.assertEqual(b"lbum" in self.okz.read_bytes(), False)
        self.compara(self.extrae("--password-file", self.clave))

    def test_bsdtar(self):
        self.comprime(self.raiz)
        self.con_shell('bsdtar -xpf "$1"')

    def test_zstd_y_tar(self):
        # tar makes links that lead upwards when all else is done, and so gives
        # their folders a new time.
        os.unlink(self.raiz / "sub/roto")
        os.utime(self.raiz / "sub", ns=(0, 5))
        self.antes = foto(self.dentro)
        self.comprime(self.raiz)
        self.con_shell('zstd -dc "$1" | tar --xattrs -xp')

    def test_age_y_bsdtar(self):
        self.cifra(self.raiz)
        claro = self.d / "claro.okz"
        self.assertEqual(age(["-d", "-o", claro, self.okz], self.clave.read_text()), 0)
        self.okz = claro
        self.con_shell('bsdtar -xpf "$1"')

    def test_lo_que_otros_escriben(self):
        tar = self.d / "otro.tar.zst"
        subprocess.run(["tar", "--format=pax", "--xattrs", "--zstd", "-cf", tar, "-C", self.dentro,
                        "."], check=True, capture_output=True)
        self.okz = tar
        self.assertNotIn(".", self.lista())
        self.compara(self.extrae(a="claro"))
        self.okz = self.d / "otro.age"
        self.assertEqual(age(["-p", "-o", self.okz, tar], self.clave.read_text()), 0)
        self.compara(self.extrae("--password-file", self.clave, a="cifrado"))


class Fiel(Caso):
    def setUp(self):
        super().setUp()
        self.c = self.d / "c"
        self.c.mkdir()

    def ida_y_vuelta(self):
        self.comprime(self.c)
        salida = self.extrae()
        self.assertEqual(foto(self.c), foto(salida / "c"))
        return salida / "c"

    def test_huecos(self):
        for nombre, bytes_, desde in (("hueco", 2**33, None), ("delante", 10**7, 0),
                                      ("detrás", 10**7 + 1, 10**7), ("medio", 2**32, 2**31 + 5)):
            with open(self.c / nombre, "wb") as f:
                f.truncate(bytes_)
                if desde is not None:
                    f.seek(desde)
                    f.write(b"x" * 1)
        self.comprime(self.c)
        self.assertEqual(self.lista()["c/hueco"][2], 2**33)
        self.corre("check", self.okz)
        tar = self.d / "tar"
        tar.mkdir()
        subprocess.run(["sh", "-c", 'zstd -dc "$1" | tar -x', "sh", self.okz], cwd=tar, check=True)
        for salida in (self.extrae(), tar, self.extrae("--file", "c", a="otra")):
            for f in self.c.iterdir():
                sacado = salida / "c" / f.name
                self.assertEqual(sacado.stat().st_size, f.stat().st_size)
                self.assertLess(sacado.stat().st_blocks, 100)
                self.assertEqual(sacado.stat().st_mtime_ns, f.stat().st_mtime_ns)
            for nombre, desde in (("delante", 0), ("detrás", 10**7), ("medio", 2**31 + 5)):
                with open(salida / "c" / nombre, "rb") as f:
                    f.seek(desde)
                    self.assertEqual(f.read(1), b"x")

    def test_horas(self):
        horas = {"a": -315521754_750000000, "b": -2_000000001, "c": -1_000000000, "d": 1, "e": 0,
                 "f": 4_000_000_000_000000001}
        for nombre, hora in horas.items():
            (self.c / nombre).touch()
            os.utime(self.c / nombre, ns=(0, hora))
        self.ida_y_vuelta()
        subprocess.run(["sh", "-c", 'zstd -dc "$1" | tar -x --warning=none', "sh", self.okz],
                       cwd=self.d / "salida", check=True)
        self.assertEqual({f.name: f.stat().st_mtime_ns for f in (self.d / "salida/c").iterdir()},
                         horas)

    def test_de_root(self):
        if os.geteuid() != 0:
            self.skipTest("needs root")
        for nombre in ("ajeno", "capaz", "listado"):
            (self.c / nombre).write_text(nombre)
        os.symlink("x", self.c / "enlace")
        (self.c / "carpeta").mkdir()
        for ruta in (self.c / "ajeno", self.c / "enlace", self.c / "carpeta"):
            os.chown(ruta, 12345, 23456, follow_symlinks=False)
        os.chmod(self.c / "ajeno", 0o6755)
        os.chmod(self.c / "carpeta", 0o3777)
        os.setxattr(self.c / "capaz", "security.capability",
                    struct.pack("<5I", 0x02000001, 0x400, 0, 0, 0))
        lista = struct.pack("<I" + "HHI" * 5, 2, 1, 6, 2**32 - 1, 2, 4, 12345, 4, 4, 2**32 - 1,
                            16, 6, 2**32 - 1, 32, 0, 2**32 - 1)
        os.setxattr(self.c / "listado", "system.posix_acl_access", lista)
        os.setxattr(self.c / "carpeta", "system.posix_acl_default", lista)
        (self.c / "carpeta/heredero").touch()
        os.removexattr(self.c / "carpeta/heredero", "system.posix_acl_access")
        os.setxattr(self.c / "carpeta", "trusted.nota", b"x")
        salida = self.ida_y_vuelta()
        for ruta in self.c.rglob("*"):
            e, s = ruta.lstat(), (salida / ruta.relative_to(self.c)).lstat()
            self.assertEqual((e.st_uid, e.st_gid), (s.st_uid, s.st_gid), ruta)
        os.chmod(self.d, 0o777)
        nadie = self.extrae(a="nadie", **self.como_nadie()) / "c"
        self.assertEqual((nadie / "ajeno").stat().st_mode & 0o7777, 0o755)
        self.assertEqual((nadie / "ajeno").stat().st_uid, NADIE)

    def test_sobre_carpetas_cerradas(self):
        como = self.como_nadie()
        os.chmod(self.d, 0o777)
        (self.c / "a/b").mkdir(parents=True)
        (self.c / "a/b/f").write_text("uno")
        os.chmod(self.c / "a/b", 0o555)
        os.chmod(self.c / "a", 0)
        self.comprime(self.c)
        for _ in range(2):
            salida = self.extrae(**como)
            self.assertEqual(foto(self.c), foto(salida / "c"))

    def test_muchas_carpetas_y_muy_hondas(self):
        honda = "/".join(f"nivel{n}" for n in range(450))  # more than are kept open
        for n in range(450):
            (self.c / f"d{n}").mkdir()
            (self.c / f"d{n}/f").write_text(str(n))
        (self.c / honda).mkdir(parents=True)
        (self.c / honda / "f").write_text("hondo")
        self.ida_y_vuelta()


class Fronteras(Caso):
    def ida_y_vuelta(self, cuantos, *cifrado, semilla=7, ceros=0, nivel="1"):
        fichero = self.d / "f"
        # The same bytes and time in every run, so that sizes can be foreseen. The
        # zeros give the content an end that does not fall in with tar's own.
        fichero.write_bytes(random.Random(semilla).randbytes(cuantos) + bytes(ceros))
        os.utime(fichero, (1e9, 1e9))
        self.corre("compress", fichero, "-o", self.okz, "--level", nivel, *cifrado)
        salida = self.extrae(*cifrado[1:3])
        self.assertEqual((salida / "f").read_bytes(), fichero.read_bytes(), cuantos)

    def carga(self, cuantos, semilla):
        """Bytes of plaintext in the encrypted archive of a file of so many."""
        self.ida_y_vuelta(cuantos, "--encrypt", "--password-file", self.clave, *ESCASO,
                          semilla=semilla, ceros=20000, nivel="19")
        datos = self.okz.read_bytes()
        cifrados = len(datos) - re.search(rb"\n--- .*\n", datos).end() - 16
        return cifrados - 16 * math.ceil(cifrados / (TROZO + 16))

    def alcanza(self, carga):
        """Whether some file makes a plaintext of exactly `carga` bytes."""
        cuantos = carga - 500
        for intento in range(20):
            falta = carga - self.carga(cuantos, intento // 4)
            if falta == 0:
                return True
            cuantos += falta  # a byte more is a byte more, with few exceptions
        return False

    def test_trozos_del_cifrado(self):
        for frontera in (TROZO, 3 * TROZO):
            for carga in (frontera - 1, frontera, frontera + 1):
                self.assertTrue(self.alcanza(carga), carga)

    def test_marcos(self):
        for cuantos in (MARCO - 2048, MARCO - 1024, MARCO, MARCO + 1):
            self.ida_y_vuelta(cuantos)
        marcos = subprocess.run(["zstd", "-lv", self.okz], capture_output=True, text=True, check=True)
        self.assertIn("# Zstandard Frames: 2", marcos.stdout)
        self.assertIn("Check: XXH64", marcos.stdout)

    def test_vacio(self):
        self.ida_y_vuelta(0)

    def test_max_es_menor_y_lo_leen_todos(self):
        fichero = self.d / "f"
        letra = random.Random(7)
        lejos = bytes(letra.choices(b"abcdefgh", k=2 * TROZO))
        fichero.write_bytes(lejos + bytes(18 * 1024 * 1024) + lejos)
        self.comprime(fichero, nivel="19")
        normal = self.okz.stat().st_size
        self.corre("compress", fichero, "-o", self.okz, "--max")
        self.assertLess(self.okz.stat().st_size, 0.6 * normal)
        self.assertEqual(self.lista(), {"f": ("-", "0644", fichero.stat().st_size)})
        self.assertEqual((self.extrae("--file", "f") / "f").read_bytes(), fichero.read_bytes())
        subprocess.run(["xz", "-tq", self.okz], check=True)
        salida = subprocess.run(["bsdtar", "-xOf", self.okz], check=True, capture_output=True)
        self.assertEqual(salida.stdout, fichero.read_bytes())


if __name__ == "__main__":
    unittest.main()
