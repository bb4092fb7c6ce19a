"""The index: what it saves, and what happens when it is wrong."""

import os
import struct
import subprocess
import unittest
import zlib

from motor import Caso, MEBI, desordenado


def variables(bytes_, i=0):
    """The numbers from `i` on, each with where the next thing begins."""
    while True:
        numero = desplazado = 0
        while True:
            numero |= (bytes_[i] & 0x7F) << desplazado
            desplazado += 7
            i += 1
            if bytes_[i - 1] < 0x80:
                break
        yield numero, i


class Indice(Caso):
    def setUp(self):
        super().setUp()
        for i in range(5):
            self.pon(f"c/{i}.gz", desordenado(10 * MEBI))
        self.pon("c/2.gz.txt", "pequeño")
        os.link(self.c / "3.gz", self.c / "otro.gz")
        self.comprime(self.c)
        self.bueno = self.okz.read_bytes()
        self.rotulo = struct.unpack("<8sQQQQQQQ", self.bueno[-64:])
        lugar, largo = self.rotulo[2:4]
        self.indice = subprocess.run(["zstd", "-dc"], input=self.bueno[lugar + 8:lugar + largo],
                                     capture_output=True, check=True).stdout
        numeros = variables(self.indice)
        cuantos, _ = next(numeros)
        empacados = [(next(numeros)[0], next(numeros)[1]) for _ in range(cuantos)]
        self.marcos = [largo for largo, _ in empacados]
        self.entradas = empacados[-1][1]  # where they begin in the index

    def pon_indice(self, crudo, **cambios):
        """The archive with another index, sound in itself."""
        r = self.rotulo
        hecho = subprocess.run(["zstd", "-qc"], input=crudo, capture_output=True, check=True).stdout
        campos = {"lugar": r[2], "largo": len(hecho) + 8, "crudo": len(crudo), "entradas": r[5],
                  "tar": r[6], **cambios}
        texto = struct.pack("<8sQQQQQQI", r[0], r[1], *campos.values(), 0)
        texto += struct.pack("<I", zlib.crc32(texto))
        self.okz.write_bytes(self.bueno[:r[2]] + b"\x50\x2a\x4d\x18" +
                             struct.pack("<I", len(hecho)) + hecho +
                             b"\x50\x2a\x4d\x18\x40\0\0\0" + texto)

    def test_uno_cuesta_lo_suyo(self):
        """Frames that do not hold what is asked for may be broken: nobody looks."""
        self.assertGreater(len(self.marcos), 3)
        leibles = dict.fromkeys(("0.gz", "2.gz.txt", "4.gz"), 0)
        inicio = 0
        for largo in self.marcos:
            self.okz.write_bytes(self.bueno[:inicio + 4] + bytes(largo - 4) + self.bueno[inicio + largo:])
            inicio += largo
            self.assertEqual(len(self.lista()), 8)
            for nombre in leibles:
                if self.corre("extract", self.okz, "-o", self.d / f"s{inicio}", "--file", f"c/{nombre}",
                              falla=None).returncode == 0:
                    self.assertEqual((self.d / f"s{inicio}/c" / nombre).read_bytes(),
                                     (self.c / nombre).read_bytes())
                    leibles[nombre] += 1
        self.assertGreaterEqual(min(leibles.values()), len(self.marcos) - 2)

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
        crudo, i, antes = self.indice, self.entradas, self.lista()
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
        self.pon_indice(otro)
        self.error_al_sacar("--file", "c/2.gx")


if __name__ == "__main__":
    unittest.main()
