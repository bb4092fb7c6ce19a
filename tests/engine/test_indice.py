"""The index: what it saves, and what happens when it is wrong."""

import os
import struct
import subprocess
import unittest
import zlib

from motor import MOTOR, Caso, desordenado

MEBI = 1024 * 1024


def variable(bytes_, i):
    """The number at `i` and where the next thing begins."""
    numero = desplazado = 0
    while True:
        numero |= (bytes_[i] & 0x7F) << desplazado
        desplazado += 7
        i += 1
        if bytes_[i - 1] < 0x80:
            return numero, i


class Indice(Caso):
    def setUp(self):
        super().setUp()
        self.c = self.d / "c"
        self.c.mkdir()
        for i in range(5):
            (self.c / f"{i}.gz").write_bytes(desordenado(10 * MEBI))
        (self.c / "2.gz.txt").write_text("pequeño")
        os.link(self.c / "3.gz", self.c / "otro.gz")
        self.comprime(self.c)
        self.bueno = self.okz.read_bytes()

    def rotulo(self):
        return list(struct.unpack("<8sQQQQQQQ", self.okz.read_bytes()[-64:]))

    def indice(self):
        r = self.rotulo()
        return subprocess.run(["zstd", "-dc"], input=self.bueno[r[2] + 8:r[2] + r[3]],
                              capture_output=True, check=True).stdout

    def pon_indice(self, crudo, **cambios):
        """The archive with another index, sound in itself."""
        r = self.rotulo()
        hecho = subprocess.run(["zstd", "-qc"], input=crudo, capture_output=True, check=True).stdout
        campos = {"lugar": r[2], "largo": len(hecho) + 8, "crudo": len(crudo), "entradas": r[5],
                  "tar": r[6], **cambios}
        texto = struct.pack("<8sQQQQQQI", r[0], r[1], *campos.values(), 0)
        texto += struct.pack("<I", zlib.crc32(texto))
        self.okz.write_bytes(self.bueno[:r[2]] + b"\x50\x2a\x4d\x18" +
                             struct.pack("<I", len(hecho)) + hecho +
                             b"\x50\x2a\x4d\x18\x40\0\0\0" + texto)

    def marcos(self):
        """Where each frame begins, and how long it is."""
        crudo = self.indice()
        cuantos, i = variable(crudo, 0)
        inicio, lista = 0, []
        for _ in range(cuantos):
            empacado, i = variable(crudo, i)
            _, i = variable(crudo, i)
            lista.append((inicio, empacado))
            inicio += empacado
        return lista

    def test_uno_cuesta_lo_suyo(self):
        """Frames that do not hold what is asked for may be broken: nobody looks."""
        marcos = self.marcos()
        self.assertGreater(len(marcos), 3)
        unos, leibles = ("0.gz", "2.gz.txt", "4.gz"), {}
        for inicio, largo in marcos:
            roto = bytearray(self.bueno)
            roto[inicio + 4:inicio + largo] = bytes(largo - 4)
            self.okz.write_bytes(roto)
            self.assertEqual(len(self.lista()), 8)
            for nombre in unos:
                destino = self.d / f"s{inicio}"
                r = subprocess.run([MOTOR, "extract", self.okz, "-o", destino,
                                    "--file", f"c/{nombre}"], capture_output=True, check=False)
                if r.returncode == 0:
                    self.assertEqual((destino / "c" / nombre).read_bytes(),
                                     (self.c / nombre).read_bytes())
                    leibles[nombre] = leibles.get(nombre, 0) + 1
        for nombre in unos:
            self.assertGreaterEqual(leibles[nombre], len(marcos) - 2, nombre)

    def test_enlace_y_carpeta(self):
        salida = self.extrae("--file", "c/otro.gz", a="uno")
        self.assertEqual(os.listdir(salida / "c"), ["otro.gz"])
        self.assertEqual((salida / "c/otro.gz").read_bytes(), (self.c / "3.gz").read_bytes())
        self.assertEqual(self.lista()["c/otro.gz"], ("h", "0644", 10 * MEBI))
        salida = self.extrae("--file", "c", a="todo")
        self.assertTrue((salida / "c/otro.gz").samefile(salida / "c/3.gz"))
        subprocess.run(["diff", "-r", self.c, salida / "c"], check=True)

    def test_mentiras(self):
        """Whatever a sound index claims, what comes out is what the stream has."""
        crudo, antes = self.indice(), self.lista()
        cuantos, i = variable(crudo, 0)
        for _ in range(2 * cuantos):
            _, i = variable(crudo, i)
        otro = crudo[:i] + crudo[i:].replace(b"2.gz", b"2.gx", 1)
        for cambio in (dict(crudo=otro), dict(crudo=crudo[:-3]), dict(crudo=crudo + b"\0"),
                       dict(crudo=b"\xff" * 9 + b"\x01" + crudo), dict(crudo=b"\0" + crudo[i:]),
                       dict(crudo=crudo, entradas=1 << 60), dict(crudo=crudo, entradas=0),
                       dict(crudo=crudo, tar=(1 << 64) - 1), dict(crudo=crudo, lugar=1 << 63),
                       dict(crudo=crudo, largo=1 << 62)):
            self.pon_indice(**cambio)
            with self.subTest(cambio={k: v for k, v in cambio.items() if k != "crudo"}):
                if cambio["crudo"] is not otro:
                    self.assertEqual(self.lista(), antes)
                salida = self.extrae("--file", "c/4.gz")
                self.assertEqual((salida / "c/4.gz").read_bytes(), (self.c / "4.gz").read_bytes())
        self.pon_indice(crudo.replace(b"2.gz", b"2.gx", 1))
        self.error("extract", self.okz, "-o", self.d / "salida", "--file", "c/2.gx")


if __name__ == "__main__":
    unittest.main()
