"""What a person at a terminal gets: the moving line, check, the help and its kin."""

import fcntl
import os
import pathlib
import pty
import re
import shutil
import struct
import subprocess
import termios
import unittest

from motor import Caso, ESCASO, MOTOR, PROGRESO, desordenado

RAIZ = pathlib.Path(__file__).resolve().parents[2]
ORDENES = ("compress", "list", "extract", "check")
COLUMNAS = 40
MEBI = 1024 * 1024


def cambiado(datos, i):
    return datos[:i] + bytes([datos[i] ^ 4]) + datos[i:][1:]


class Terminal(Caso):
    def setUp(self):
        super().setUp()
        self.carpeta = self.d / "carpeta"
        self.carpeta.mkdir()
        os.mkfifo(self.carpeta / "tubería")  # nothing to pack: worth a warning
        (self.carpeta / "grande").write_bytes(desordenado(200 * MEBI))

    def en_terminal(self, *argumentos):
        """Runs the engine on a narrow terminal; its status and what came out."""
        pid, terminal = pty.fork()
        if pid == 0:
            fcntl.ioctl(2, termios.TIOCSWINSZ, struct.pack("4H", 24, COLUMNAS, 0, 0))
            os.execve(MOTOR, ["orcalin", *map(os.fspath, argumentos)],
                      {**os.environ, "TERM": "xterm"})
        salida = b""
        try:
            while trozo := os.read(terminal, 65536):
                salida += trozo
        except OSError:  # the other end is closed
            pass
        os.close(terminal)
        return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), salida.decode()

    def test_se_redibuja_en_su_sitio(self):
        guarda = ("compress", self.carpeta, "-o", self.okz, "--level", "1")
        ordenes = ((guarda, "Guardando"),
                   ((*guarda, "--progress", "--encrypt", "--password-file", self.clave, *ESCASO), "Guardando"),
                   (("extract", self.okz, "-o", self.d, "--password-file", self.clave), "Sacando"),
                   (("check", self.okz, "--password-file", self.clave), "Comprobando"))
        for orden, que in ordenes:
            estado, salida = self.en_terminal(*orden)
            self.assertEqual(estado, 0, salida)
            vistos = re.findall(r"\r\x1b\[K([^\r\n]*)", salida)
            marchas = [v for v in vistos if v.startswith(que)]
            self.assertTrue(marchas, salida)
            self.assertEqual(max(map(len, marchas)), COLUMNAS - 1)
            self.assertEqual(vistos[-1] if que != "Comprobando" else "", "")
            quedan = [re.sub(r".*\x1b\[K", "", l) for l in re.split(r"\r?\n", salida)]
            self.assertEqual([l.split(":")[0] for l in quedan if l],
                             {"Guardando": ["Aviso"], "Sacando": [],
                              "Comprobando": ["El archivo está sano"]}[que])

    def test_en_una_tuberia_no_cambia_nada(self):
        orden = ("compress", self.carpeta, "-o", self.okz, "--level", "1")
        con = self.corre(*orden, "--progress", env={**os.environ, "TERM": "xterm"})
        sin = self.corre(*orden, env={**os.environ, "TERM": "xterm"})
        self.assertNotIn(b"\r", con.stderr + sin.stderr)
        self.assertGreater(len([l for l in con.lineas if PROGRESO.match(l)]), 1)
        self.assertEqual([l for l in con.lineas if not PROGRESO.match(l)], sin.lineas)
        self.assertEqual(len(sin.lineas), 1)


class Comprobar(Caso):
    def guarda(self, *opciones, cuantos, bytes_):
        for i in range(cuantos):
            (self.d / f"f{i}").write_bytes(desordenado(bytes_))
        os.link(self.d / "f0", self.d / "otro")
        self.corre("compress", *(self.d / f"f{i}" for i in range(cuantos)), self.d / "otro",
                   "-o", self.okz, *opciones)
        sano = self.corre("check", self.okz)
        self.assertEqual(sano.lineas, [])
        self.assertEqual(sano.stdout.decode(), f"El archivo está sano: {cuantos + 1} elementos, "
                                               f"{cuantos * bytes_} bytes\n")
        return self.okz.read_bytes()

    def danado(self, datos):
        """The error, and what is said to be lost."""
        self.okz.write_bytes(datos)
        r = self.corre("check", self.okz, falla=True)
        self.assertEqual(r.stdout, b"")
        return r.lineas[-1], re.findall("^Aviso: dañado: «(.*)»$", r.stderr.decode(), re.M)

    def test_dice_lo_que_se_ha_perdido(self):
        bueno = self.guarda("--level", "1", cuantos=5, bytes_=12 * MEBI)
        dos = cambiado(cambiado(bueno, 100), len(bueno) // 2)  # in two frames
        error, perdidas = self.danado(dos)
        self.assertEqual(error, "Error: el archivo está dañado")
        self.assertGreaterEqual(len(perdidas), 2)
        for nombre in ("f0", "f1", "f2", "f3", "f4", "otro"):
            r = subprocess.run([MOTOR, "extract", self.okz, "-o", self.d / "s", "--file", nombre],
                               capture_output=True, check=False)
            self.assertEqual(r.returncode != 0, nombre in perdidas, nombre)
        error, perdidas = self.danado(bueno[:len(bueno) // 2])
        self.assertEqual((error, len(perdidas)), ("Error: el archivo está incompleto", 1))

    def test_indice_y_rotulo(self):
        for opciones in (("--level", "1"), ("--max",)):
            (self.d / "f0").unlink(missing_ok=True)
            (self.d / "otro").unlink(missing_ok=True)
            bueno = self.guarda(*opciones, cuantos=1, bytes_=1000)
            rotulo = bueno.rindex(b"OKZindex")
            largo = len(bueno) - int.from_bytes(bueno[rotulo + 16:rotulo + 24], "little")
            inocuos = 0
            for desde_el_final in range(1, largo + 1):
                self.okz.write_bytes(cambiado(bueno, -desde_el_final))
                r = subprocess.run([MOTOR, "check", self.okz], capture_output=True, check=False)
                inocuos += r.returncode == 0
                self.assertNotIn("dañado: ", r.stderr.decode(), desde_el_final)
            # Without its checksum the index is as good, and compared all the same.
            self.assertLessEqual(inocuos, 1)

    def test_sin_indice_no_es_dano(self):
        subprocess.run("tar -c clave | zstd -q >a.okz", shell=True, cwd=self.d, check=True)
        self.corre("check", self.okz)

    def test_cifrado(self):
        self.cifra(self.clave)
        self.assertEqual(self.error("check", self.okz), "hace falta la contraseña")
        self.corre("check", self.okz, "--password-file", self.clave)
        self.okz.write_bytes(self.okz.read_bytes()[:-1])
        self.assertIn("dañado", self.error("check", self.okz, "--password-file", self.clave))


class Ayuda(Caso):
    def ayuda(self, *orden):
        r = self.corre(*orden, "--help")
        self.assertEqual(r.lineas, [])
        return r.stdout.decode()

    def test_cabe_y_nombra_lo_que_hay(self):
        self.assertRegex(self.corre("--version").stdout.decode(), r"^orcalin \d+\.\d+\.\d+\n$")
        for orden in ((), *((o,) for o in ORDENES)):
            texto = self.ayuda(*orden)
            self.assertLessEqual(max(map(len, texto.splitlines())), 80)
            self.assertTrue(texto.startswith("Uso: orcalin " + "".join(orden)), texto)
            for otra in ORDENES if not orden else ():
                self.assertIn(f"\n  {otra} ", texto)

    def test_lo_que_falla_se_nombra(self):
        for orden, culpable in (((), "orden"), (("compress",), "ORIGEN"), (("compress", "x"), "-o"),
                                (("list", "a", "--nada"), "--nada"),
                                (("compress", "x", "-o", "a", "--level", "30"), "--level")):
            self.assertIn(culpable, self.error(*orden))

    def test_manual_y_completado_van_con_la_ayuda(self):
        textos = {ruta.name: ruta.read_text().replace("\\-", "-") for ruta in
                  [RAIZ / "docs/man/orcalin.1", *(RAIZ / "datos/completado").iterdir()]}
        self.assertEqual(len(textos), 4)
        for orden in ORDENES:
            opciones = re.findall(r"^  .*?(--?[a-z][a-z-]*)(?: |$)", self.ayuda(orden), re.M)
            self.assertGreater(len(opciones), 1)
            for nombre, texto in textos.items():
                for palabra in (orden, *opciones):
                    # fish leaves the dashes out
                    self.assertRegex(texto, rf"(?<![a-z-])({palabra}|-[lso] {palabra.lstrip('-')})\b",
                                     nombre)

    @unittest.skipUnless(shutil.which("man"), "needs man")
    def test_manual_bien_compuesto(self):
        r = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                            RAIZ / "docs/man/orcalin.1"], capture_output=True, check=True)
        self.assertEqual(r.stderr.decode(), "")

    def completa(self, *palabras):
        guion = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=();'
                 '_orcalin; printf "%s\\n" "${COMPREPLY[@]}"')
        r = subprocess.run(["bash", "-c", guion, "bash", RAIZ / "datos/completado/orcalin.bash", "orcalin",
                            *palabras], cwd=self.d, capture_output=True, check=True)
        self.assertEqual(r.stderr, b"")
        return sorted(r.stdout.decode().split("\n")[:-1])

    def test_completado_de_bash(self):
        (self.d / "mis fotos.okz").touch()
        (self.d / "mis cosas").mkdir()
        (self.d / "mi.txt").touch()
        self.assertEqual(self.completa("ex"), ["extract"])
        self.assertEqual(self.completa("check", "mi"), ["mis cosas", "mis fotos.okz"])
        self.assertEqual(self.completa("extract", "a.okz", "-o", "mi"), ["mis cosas"])
        self.assertEqual(self.completa("list", "--pass"), ["--password-file"])
        self.assertEqual(self.completa("list", "--password-file", "mi"),
                         ["mi.txt", "mis cosas", "mis fotos.okz"])
        self.assertEqual(self.completa("compress", "mi.t"), ["mi.txt"])


if __name__ == "__main__":
    unittest.main()
