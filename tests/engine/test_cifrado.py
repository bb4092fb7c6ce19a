"""Encrypted archives: the password, the header, the chunks."""

import os
import re
import resource
import struct
import subprocess
import time
import unittest

from motor import Caso, ESCASO, MOTOR, age, desordenado

SELLADO = 64 * 1024 + 16
MALA = "contraseña incorrecta"
FALTA = "hace falta la contraseña"
DANO = "el archivo está dañado"
CORTADO = "el archivo está incompleto"


class Contrasena(Caso):
    def setUp(self):
        super().setUp()
        self.otra = self.d / "otra"

    def test_falta_o_no_vale(self):
        self.cifra(self.clave)
        self.assertEqual(self.error("list", self.okz), FALTA)
        self.assertEqual(self.error("extract", self.okz, "-o", self.d / "salida"), FALTA)
        for contenido, mensaje in (("", FALTA), ("tres", MALA),
                                   (self.clave.read_text() + "\n", MALA)):
            self.otra.write_text(contenido)
            con = ("--password-file", self.otra)
            self.assertEqual(self.error("list", self.okz, *con), mensaje)
            self.assertEqual(self.error("extract", self.okz, "-o", self.d / "salida", *con), mensaje)
        self.assertFalse((self.d / "salida").exists())

    def test_falta_al_guardar(self):
        orden = ("compress", self.clave, "-o", self.okz, "--encrypt")
        self.otra.touch()
        no_se_lee = "no se puede leer el fichero de la clave: "
        for con, mensaje in (((), FALTA), ((self.otra,), FALTA),
                             ((self.d / "no existe",), no_se_lee + "no existe"),
                             ((self.d,), no_se_lee + "es una carpeta")):
            self.assertEqual(self.error(*orden, *(("--password-file", *con) if con else ())),
                             mensaje)
        self.assertFalse(self.okz.exists())

    def test_factor_de_siempre_y_aviso(self):
        orden = ("compress", self.clave, "-o", self.okz, "--encrypt", "--password-file", self.clave)
        lineas = self.corre(*orden, "--progress").lineas
        self.assertEqual(lineas[0], "deriving key")
        self.assertNotIn("deriving key", lineas[1:])
        self.assertRegex(self.okz.read_bytes(), rb"\n-> scrypt \S+ 17\n")
        self.assertEqual(list(self.lista("--password-file", self.clave)), ["clave"])
        self.assertNotIn("deriving key", self.corre(*orden, *ESCASO).lineas)

    def test_dos_veces_no_es_lo_mismo(self):
        self.cifra(self.clave)
        uno = self.okz.read_bytes()
        self.cifra(self.clave)
        self.assertNotEqual(uno[:100], self.okz.read_bytes()[:100])
        self.assertNotEqual(uno[-100:], self.okz.read_bytes()[-100:])


    def test_ni_volcados_ni_miradas(self):
        como = self.como_nadie()
        for ruta in (self.d, self.clave):
            os.chmod(ruta, 0o777)
        p = subprocess.Popen([MOTOR, "compress", self.clave, "-o", self.okz, "--encrypt",
                              "--password-file", self.clave, "--progress"],
                             stderr=subprocess.PIPE, **como)
        with p:
            self.assertEqual(p.stderr.readline(), b"deriving key\n")
            # Only of a process that can be dumped and traced does it belong to the user.
            self.assertEqual(os.stat(f"/proc/{p.pid}/mem").st_uid, 0)


@unittest.skipUnless(os.path.exists("/proc/keys"), "the kernel keeps no keys")
class Llavero(Caso):
    def segundos(self, *argumentos, falla=False, entorno=None):
        def total():
            r = resource.getrusage(resource.RUSAGE_CHILDREN)
            return r.ru_utime + r.ru_stime
        antes = total()
        self.corre("list", self.okz, "--password-file", *argumentos, falla=falla,
                   env={**os.environ, **(entorno or {})})
        return total() - antes

    def test_la_derivacion_se_paga_una_vez(self):
        orden = ("compress", "--level", "1", "--encrypt", "--password-file", self.clave)
        otra = self.d / "otra"
        otra.write_text("tres tristes tigres")
        self.corre(*orden, otra, "-o", self.okz)
        entera = self.segundos(self.clave)
        self.assertLess(self.segundos(self.clave), entera / 3)
        self.assertGreater(self.segundos(self.clave, entorno={"ORCALIN_SIN_LLAVERO": "1"}), entera / 2)
        self.assertGreater(self.segundos(otra, falla=True), entera / 2)
        self.assertLess(self.segundos(self.clave), entera / 3)
        self.corre(*orden, otra, "-o", self.okz)  # the same password, another archive
        self.assertGreater(self.segundos(self.clave), entera / 2)
        with open("/proc/keys", encoding="ascii") as llaves:
            for linea in [l for l in llaves if "orcalin:" in l and ": 150" in l]:
                self.assertRegex(linea, r" (1m|\d+s|expd) 3b000000 ")


class Manipulado(Caso):
    def setUp(self):
        super().setUp()
        fichero = self.d / "f"
        fichero.write_bytes(desordenado(3 * 64 * 1024 + 10))
        self.cifra(fichero)
        self.bueno = self.okz.read_bytes()
        self.inicio = re.search(rb"\n--- \S{43}\n", self.bueno).end()

    def con(self, datos):
        self.assertNotEqual(datos, self.bueno)
        self.okz.write_bytes(datos)
        return self.error("extract", self.okz, "-o", self.d / "salida", "--password-file", self.clave)

    def cambiado(self, patron, nuevo):
        return self.con(re.sub(patron, nuevo, self.bueno, count=1))

    def test_cabecera(self):
        def otro(b):
            return b"A" if b != b"A" else b"B"
        # Only who knows the password could tell these two from a wrong one.
        self.assertEqual(self.cambiado(rb"(?<=scrypt )(.)", lambda m: otro(m[1])), MALA)
        self.assertEqual(self.cambiado(rb"(?<= 4\n)(.)", lambda m: otro(m[1])), MALA)
        self.assertEqual(self.cambiado(rb"(?<=--- )(.)", lambda m: otro(m[1])), DANO)
        self.assertEqual(self.cambiado(rb"\.org/v1", b".org/v2"), "no es un archivo .okz")

    def test_solo_la_forma_canonica(self):
        alfabeto = b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"

        def sobrante(m):  # sets a bit that encodes nothing
            return alfabeto[alfabeto.index(m[1]) | 1:][:1]
        for patron, nuevo in ((rb" 4\n", b" 04\n"), (rb" 4\n", b" +4\n"), (rb" 4\n", b" 4 \n"),
                              (rb" 4\n", b" 4\r\n"), (rb"-> scrypt", b"-> scrypt "),
                              (rb" 4\n", b"== 4\n"), (rb"(\S)(?= 4\n)", sobrante),
                              (rb"(\S)(?=\n---)", sobrante), (rb"(\S)(?=\n---)", rb"\1="),
                              (rb"--- ", b"---  "), (rb"\n---", b"\n\n---"), (rb"\n---", b"\n-> x\n\n---"),
                              (rb"--- \S+\n", b"---\n"), (rb" 4\n", b"\n")):
            self.assertEqual(self.cambiado(patron, nuevo), DANO, (patron, nuevo))

    def test_lo_que_no_se_acepta_abrir(self):
        desde = time.monotonic()
        for factor in (b"23", b"30", b"99999999999999999999"):
            self.assertIn("trabajo", self.cambiado(rb" 4\n", b" " + factor + b"\n"))
        self.assertLess(time.monotonic() - desde, 2)
        self.assertIn("cifrado", self.cambiado(rb"-> scrypt", b"-> X25519"))

    def test_cabecera_cortada(self):
        for largo in (22, 30, 70, 120, self.inicio - 1, self.inicio + 10):
            self.assertIn(self.con(self.bueno[:largo]), (DANO, CORTADO))

    def test_carga(self):
        cabeza, carga = self.bueno[:self.inicio + 16], self.bueno[self.inicio + 16:]
        trozos = [carga[i:i + SELLADO] for i in range(0, len(carga), SELLADO)]
        self.assertEqual(len(trozos), 4)
        for i in (0, len(carga) // 2):
            self.assertEqual(self.con(cabeza + cambiado(carga, i)), DANO)
        self.assertEqual(self.con(self.bueno[:self.inicio] + bytes(16) + carga), DANO)
        for orden in ((1, 0, 2, 3), (0, 1, 2, 2, 3)):
            self.assertEqual(self.con(cabeza + b"".join(trozos[i] for i in orden)), DANO)
        for largo in (0, SELLADO, 3 * SELLADO, 3 * SELLADO + 16):
            self.assertEqual(self.con(cabeza + carga[:largo]), CORTADO)
        # Nobody can tell what became of a short last chunk.
        for datos in (self.bueno + b"x", self.bueno[:-1], cambiado(self.bueno, -1),
                      cabeza + trozos[0] + trozos[3]):
            self.assertEqual(self.con(datos), f"{CORTADO} o dañado")
        self.assertFalse((self.d / "salida/f").exists())


def cambiado(datos, i):
    otro = bytearray(datos)
    otro[i] ^= 1
    return bytes(otro)


class UltimoTrozoLleno(Caso):
    def test_donde_acaba(self):
        claro = self.d / "claro"
        self.comprime(self.clave)
        datos = self.okz.read_bytes()
        relleno = 2 * 64 * 1024 - len(datos) - 8  # a frame that every decoder skips
        claro.write_bytes(datos + struct.pack("<II", 0x184D2A50, relleno) + bytes(relleno))
        age(["-p", "-o", self.d / "c.age", claro], self.clave.read_text())
        bueno = (self.d / "c.age").read_bytes()
        self.assertEqual((len(bueno) - bueno.index(b"\n--- ")) // SELLADO, 2)
        con = ("--password-file", self.clave)
        for nuevo, mensaje in ((bueno, None), (bueno + b"x", DANO), (bueno + bytes(16), DANO),
                               (bueno + bytes(99), DANO), (cambiado(bueno, -1), DANO),
                               (bueno[:-SELLADO], CORTADO), (bueno[:-SELLADO + 9], CORTADO)):
            self.okz.write_bytes(nuevo)
            if mensaje:
                self.assertEqual(self.error("list", self.okz, *con), mensaje)
            else:
                self.assertEqual(list(self.lista(*con)), ["clave"])


if __name__ == "__main__":
    unittest.main()
