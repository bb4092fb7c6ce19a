"""What goes in comes out, whoever takes it out."""

import math
import os
import random
import re
import subprocess
import unittest

from motor import Caso, ESCASO, age, foto, siembra

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
