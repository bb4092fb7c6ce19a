"""Encrypted archives: the password, the header, the chunks."""

import hashlib
import os
import pathlib
import re
import resource
import shutil
import struct
import subprocess
import time
import unittest

from motor import (Caso, ESCASO, MEBI, MOTOR, SEGUNDO, age, cambiado, desordenado, en_terminal,
                   sin_saneador)

SELLADO = 64 * 1024 + 16
MALA = "contraseña incorrecta"
FALTA = "hace falta la contraseña"
DANO = "el archivo está dañado"
CORTADO = "el archivo está incompleto"


class Contrasena(Caso):
    def test_falta_o_no_vale(self):
        self.comprime(self.clave, *self.en_clave)
        otra = self.d / "otra"
        for contenido, mensaje in (("", FALTA), ("tres", MALA), (self.clave.read_text() + "\n", MALA)):
            self.pon("otra", contenido)
            for orden in (("list", self.okz), ("check", self.okz), ("extract", self.okz, "-o", self.salida)):
                self.assertEqual(self.error(*orden, "--password-file", otra), mensaje)
        self.assertEqual(self.error("list", self.okz), FALTA)
        self.assertFalse(self.salida.exists())
        self.okz.unlink()
        self.pon("otra")
        no_se_lee = "no se puede leer el fichero de la clave: "
        for otra, mensaje in ((otra, FALTA), (self.d, no_se_lee + "es una carpeta"),
                              (self.d / "no existe", no_se_lee + "no existe")):
            self.assertEqual(self.error("compress", self.clave, "-o", self.okz, "--encrypt",
                                        "--password-file", otra), mensaje)
        self.assertEqual(self.error("compress", self.clave, "-o", self.okz, "--encrypt"), FALTA)
        self.assertIn("encrypt", self.error("compress", self.clave, "-o", self.okz, "--encrypt=false", *self.con))
        # Whoever gives a password would believe that it was needed.
        for clave in (self.clave, "", self.d / "no existe"):
            self.assertIn("falta --encrypt", self.error("compress", self.clave, "-o", self.okz,
                                                        "--password-file", clave))
        self.assertFalse(self.okz.exists())

    def test_factor_de_siempre_y_aviso(self):
        orden = ("compress", self.clave, "-o", self.okz, "--encrypt", *self.con)
        lineas = self.corre(*orden, "--progress").lineas
        self.assertEqual([l for l in lineas if l == "deriving key"], lineas[:1])
        uno = self.okz.read_bytes()
        self.assertRegex(uno, rb"\n-> scrypt \S+ 17\n")
        self.assertEqual(self.corre(*orden, *ESCASO).lineas, [])
        otro = self.okz.read_bytes()  # of the same, never the same twice
        self.assertNotEqual(uno[:100], otro[:100])
        self.assertNotEqual(uno[-100:], otro[-100:])

    @sin_saneador("it looks into its own memory")
    def test_ni_volcados_ni_miradas(self):
        como = self.como_nadie()
        os.chmod(self.clave, 0o777)
        with subprocess.Popen([MOTOR, "compress", self.clave, "-o", self.okz, "--encrypt", *self.con,
                               "--progress"], stderr=subprocess.PIPE, **como) as p:
            self.assertEqual(p.stderr.readline(), b"deriving key\n")
            # Only of a process that can be dumped and traced does it belong to the user.
            self.assertEqual(os.stat(f"/proc/{p.pid}/mem").st_uid, 0)

    @sin_saneador("to start takes as long as the derivation")
    @unittest.skipUnless(os.path.exists("/proc/keys"), "the kernel keeps no keys")
    def test_la_derivacion_se_paga_una_vez(self):
        def segundos(clave, falla=False, **entorno):
            antes = resource.getrusage(resource.RUSAGE_CHILDREN)
            self.corre("list", self.okz, "--password-file", clave, falla=falla, env={**os.environ, **entorno})
            r = resource.getrusage(resource.RUSAGE_CHILDREN)
            return r.ru_utime + r.ru_stime - antes.ru_utime - antes.ru_stime
        orden = ("compress", "--encrypt", *self.con, "-o", self.okz, self.clave)
        self.corre(*orden)
        entera = segundos(self.clave)
        self.assertLess(segundos(self.clave), entera / 3)
        self.assertGreater(segundos(self.clave, ORCALIN_SIN_LLAVERO="1"), entera / 2)
        self.assertGreater(segundos(self.pon("otra", "tres"), falla=True), entera / 2)
        self.corre(*orden)  # the same password, another archive
        self.assertGreater(segundos(self.clave), entera / 2)

    @unittest.skipUnless(os.path.exists("/proc/keys"), "the kernel keeps no keys")
    def test_lo_que_se_recuerda_y_lo_que_no(self):
        self.corre("compress", "--encrypt", *self.con, "-o", self.okz, self.clave, "--work-factor", "14")
        cabecera = re.match(rb"(?s).*?\n--- \S{43}\n", self.okz.read_bytes())[0]
        nombre = "orcalin:" + hashlib.blake2b(cabecera, digest_size=32).hexdigest()

        def llaves():
            return [l for l in pathlib.Path("/proc/keys").read_text().splitlines() if nombre in l]
        for orden in (("list",), ("check",), ("extract", "-o", self.salida)):
            self.corre(orden[0], self.okz, *orden[1:], *self.con, "--no-remember")
        self.corre("list", self.okz, *self.con, env={**os.environ, "ORCALIN_SIN_LLAVERO": ""})
        self.error("list", self.okz, "--password-file", self.pon("otra", "tres"))
        self.assertEqual(llaves(), [])
        self.corre("list", self.okz, *self.con)
        self.assertEqual(len(llaves()), 1)
        self.assertRegex(llaves()[0], r" (1m|\d+s) 3b000000 ")

    def test_en_un_terminal_se_dice_la_espera(self):
        self.corre("compress", "--encrypt", *self.con, "-o", self.okz, self.clave, "--work-factor", "14")
        espera = "\r\x1b[KComprobando la contraseña...\r\x1b[K"
        for clave, queda in ((self.clave, "-0644"), (self.pon("otra", "tres"), f"Error: {MALA}")):
            orden = ("list", self.okz, "--password-file", clave, "--no-remember")
            self.assertIn(espera + queda, en_terminal((MOTOR, *orden))[1])
            self.assertNotIn("Comprobando", self.corre(*orden, falla=None).stderr.decode())


class Memoria(Caso):
    """Archives that ask for more memory than there is, which is told before it is taken."""

    def pide(self, *antes, factor=18):
        """What is said to be left, or whatever else is said."""
        self.comprime(self.clave, *self.en_clave)
        self.okz.write_bytes(self.okz.read_bytes().replace(b" 4\n", b" %d\n" % factor, 1))
        mensaje = self.error(*antes[1:], MOTOR, "list", self.okz, *self.con,
                             executable=shutil.which(antes[0]))
        hay = re.fullmatch(f"abrir el archivo pide {2 ** (factor - 10)} MiB de memoria y quedan (\\d+)", mensaje)
        return int(hay[1]) if hay else mensaje

    @sin_saneador("it takes more memory than there is to be")
    def test_los_limites_del_proceso(self):
        for limite in "vd":
            self.assertIn(self.pide("sh", "-c", f'ulimit -{limite} 240000 && exec "$@"', "sh"),
                          range(100, 234))

    @unittest.skipIf(os.geteuid() != 0, "needs root to change what the system says")
    def test_lo_que_dice_el_sistema(self):
        fichas = {"m": "MemTotal: 900000 kB\nMemAvailable:  204800 kB\n", "g": "9:x:/b\n0::/a/b\n",
                  "g/a/b/memory.max": "max\n", "g/a/memory.max": f"{300 * MEBI}\n",
                  "g/a/memory.current": f"{200 * MEBI}\n",
                  "g/a/memory.stat": f"anon 1\nactive_file {30 * MEBI}\ninactive_file {20 * MEBI}\n"}
        for nombre, texto in fichas.items():
            self.pon(f"fichas/{'proc-' if '/' not in nombre else ''}{nombre}", texto)
        meminfo = f'mount --bind {self.d}/fichas/proc-m /proc/meminfo'
        grupos = (f'mount --bind {self.d}/fichas/proc-g /proc/$$/cgroup && '
                  f'mount --bind {self.d}/fichas/g /sys/fs/cgroup')
        for monta, quedan in ((meminfo, 200), (grupos, 150), (f"{grupos} && {meminfo}", 150)):
            self.assertEqual(self.pide("unshare", "-m", "sh", "-c", f'{monta} && exec "$@"', "sh"), quedan)
        # As much as our own archives ask for is tried, since the system may find more.
        self.pon("fichas/proc-m", "MemAvailable: 1 kB\n")
        self.assertEqual(self.pide("unshare", "-m", "sh", "-c", f'{meminfo} && exec "$@"', "sh", factor=17), MALA)


class Manipulado(Caso):
    def setUp(self):
        super().setUp()
        self.comprime(self.pon("f", desordenado(3 * 64 * 1024 + 10)), *self.en_clave)
        self.bueno = self.okz.read_bytes()
        self.inicio = re.search(rb"\n--- \S{43}\n", self.bueno).end()

    def con_datos(self, datos):
        self.assertNotEqual(datos, self.bueno)
        self.okz.write_bytes(datos)
        return self.error_al_sacar(*self.con)

    def con_otra(self, patron, nuevo):
        return self.con_datos(re.sub(patron, nuevo, self.bueno, count=1))

    def test_cabecera(self):
        alfabeto = b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"

        def otro(m):
            return b"A" if m[1] != b"A" else b"B"

        def sobrante(m):  # sets a bit that encodes nothing
            return alfabeto[alfabeto.index(m[1]) | 1:][:1]
        # Only who knows the password could tell the first two from a wrong one.
        for patron, nuevo, mensaje in ((rb"(?<=scrypt )(.)", otro, MALA), (rb"(?<= 4\n)(.)", otro, MALA),
                                       (rb"(?<=--- )(.)", otro, DANO),
                                       (rb"\.org/v1", b".org/v2", "no es un archivo .okz")):
            self.assertEqual(self.con_otra(patron, nuevo), mensaje, patron)
        # Only the canonical form will do.
        for patron, nuevo in ((rb" 4\n", b" 04\n"), (rb" 4\n", b" +4\n"), (rb" 4\n", b" 4\r\n"),
                              (rb"-> scrypt", b"-> scrypt "), (rb" 4\n", b"== 4\n"),
                              (rb"(\S)(?= 4\n)", sobrante), (rb"(\S)(?=\n---)", sobrante),
                              (rb"\n---", b"\n\n---"), (rb"\n---", b"\n-> x\n\n---")):
            self.assertEqual(self.con_otra(patron, nuevo), DANO, (patron, nuevo))
        desde = time.monotonic()
        for factor in (b"23", b"30", b"99999999999999999999"):
            self.assertIn("trabajo", self.con_otra(rb" 4\n", b" " + factor + b"\n"))
        self.assertLess(time.monotonic() - desde, 2 * SEGUNDO)
        self.assertIn("cifrado", self.con_otra(rb"-> scrypt", b"-> X25519"))

    def test_carga(self):
        cabeza, carga = self.bueno[:self.inicio + 16], self.bueno[self.inicio + 16:]
        trozos = [carga[i:i + SELLADO] for i in range(0, len(carga), SELLADO)]
        self.assertEqual(len(trozos), 4)
        casos = [(cabeza + cambiado(carga, len(carga) // 2), DANO),
                 (self.bueno[:self.inicio] + bytes(16) + carga, DANO)]
        casos += [(cabeza + b"".join(trozos[i] for i in orden), DANO)
                  for orden in ((1, 0, 2, 3), (0, 1, 2, 2, 3))]
        casos += [(cabeza + carga[:largo], CORTADO) for largo in (0, 3 * SELLADO, 3 * SELLADO + 16)]
        # Nobody can tell what became of a short last chunk.
        casos += [(datos, f"{CORTADO} o dañado")
                  for datos in (self.bueno + b"x", self.bueno[:-1], cabeza + trozos[0] + trozos[3])]
        for n, (datos, mensaje) in enumerate(casos):
            self.assertIn(self.con_datos(datos), (mensaje, "1 elemento no se pudo sacar bien: dañado: «f»"), n)
        self.assertFalse((self.salida / "f").exists())

    def test_donde_acaba_un_ultimo_trozo_lleno(self):
        self.comprime(self.clave)
        datos = self.okz.read_bytes()
        relleno = 2 * 64 * 1024 - len(datos) - 8  # a frame that every decoder skips
        claro = self.pon("claro", datos + struct.pack("<II", 0x184D2A50, relleno) + bytes(relleno))
        self.okz.unlink()
        age(["-p", "-o", self.okz, claro], self.clave.read_text())
        self.assertEqual(list(self.lista(*self.con)), ["clave"])
        self.bueno = self.okz.read_bytes()
        self.assertEqual((len(self.bueno) - self.bueno.index(b"\n--- ")) // SELLADO, 2)
        for nuevo, mensaje in ((self.bueno + b"x", DANO), (self.bueno + bytes(16), DANO),
                               (cambiado(self.bueno, -1), DANO), (self.bueno[:-SELLADO], CORTADO),
                               (self.bueno[:-SELLADO + 9], CORTADO)):
            self.assertEqual(self.con_datos(nuevo), mensaje)
