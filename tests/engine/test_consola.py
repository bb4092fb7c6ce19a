"""What a person at a terminal gets: the moving line, check, the help and its kin."""

import fcntl
import os
import re
import shutil
import socket
import struct
import subprocess
import termios
import unittest

from motor import Caso, MEBI, MOTOR, PROGRESO, RAIZ, cambiado, desordenado, en_terminal

ORDENES = ("compress", "list", "extract", "check")
COLUMNAS = 40


class Terminal(Caso):
    def setUp(self):
        super().setUp()
        os.mkfifo(self.c / "tubería")  # nothing to pack: worth a warning
        self.pon("c/grande", desordenado(200 * MEBI))
        self.guarda = ("compress", self.c, "-o", self.okz, "--level", "1")

    def test_se_redibuja_en_su_sitio(self):
        def estrecha():
            fcntl.ioctl(2, termios.TIOCSWINSZ, struct.pack("4H", 24, COLUMNAS, 0, 0))
        for orden, que, queda in (
                (self.guarda, "Guardando", ["Aviso"]),
                ((*self.guarda, "--progress", *self.en_clave), "Guardando", ["Aviso"]),
                (("extract", self.okz, "-o", self.d, *self.con), "Sacando", []),
                (("check", self.okz, *self.con), "Comprobando", ["El archivo está sano"])):
            estado, salida = en_terminal((MOTOR, *orden), prepara=estrecha)
            self.assertEqual(estado, 0, salida)
            vistos = re.findall(r"\r\x1b\[K([^\r\n]*)", salida)
            marchas = [v for v in vistos if v.startswith(que)]
            self.assertEqual(max(map(len, marchas)), COLUMNAS - 1)
            quedan = [re.sub(r".*\x1b\[K", "", l) for l in re.split(r"\r?\n", salida)]
            self.assertEqual([l.split(":")[0] for l in quedan if l], queda)

    def test_en_una_tuberia_no_cambia_nada(self):
        r = self.corre(*self.guarda, "--progress", env={**os.environ, "TERM": "xterm"})
        self.assertNotIn(b"\r", r.stderr)
        avances = [PROGRESO.match(l) for l in r.lineas]
        self.assertEqual(avances.count(None), 1)
        porcentajes = [float(a[3]) for a in avances if a]
        self.assertGreater(len(porcentajes), 1)  # the first comes at once, however fast it goes
        self.assertEqual((porcentajes, porcentajes[-1]), (sorted(porcentajes), 100))


class Mensajes(Caso):
    """Names must neither pass for messages nor take them over."""

    def lineas_de(self, *orden):
        """What comes of a run, a write each."""
        leo, escribe = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        with leo:
            with escribe:
                escribe.setsockopt(socket.SOL_SOCKET, socket.SO_SNDBUF, MEBI)
                r = subprocess.run([MOTOR, *orden], stderr=escribe, stdout=subprocess.DEVNULL)
            escrituras = list(iter(lambda: leo.recv(MEBI), b""))
        r.stderr = b"".join(escrituras)
        self.juzga(r, r.returncode != 0)
        self.assertEqual(escrituras, r.stderr.splitlines(True))
        return r.lineas

    def test_un_nombre_no_es_un_mensaje(self):
        nombres = ["Error.log", "errorError", "Err\nor", "\u2028Error: x", "Eerrorrror", "Err\xffor",
                   "clave: contraseña", "password", "\x85error", "\rAviso: error"]
        for nombre in nombres:
            os.mkfifo(self.c / os.fsencode(nombre.replace("\xff", "\udcff")).decode(errors="surrogateescape"))
        lineas = self.lineas_de("compress", self.c, "-o", self.okz)
        self.assertEqual(len(lineas), len(nombres))
        for linea in lineas:
            self.assertRegex(linea, f"^Aviso: se omite «{self.c}/[^«»]+»: no es un fichero ni una carpeta$")
        for orden in (("compress", self.d / "Error no", "-o", self.okz), ("list", "a", "Error", "error"),
                      ("compress", self.c, "-o", self.okz, "--max=Error"), ("compress", "--error=Error"),
                      ("extract", self.okz, "-o", self.salida, "--file", "Error\\x0aError"),
                      ("extract", self.okz, "-o", self.salida, "--file", "c\\Error: contraseña")):
            self.assertEqual(self.lineas_de(*orden)[0].count("Error"), 1)  # and what juzga() asks for
        self.assertIn("«--max»", self.error("compress", "--max=x"))

    def test_los_muy_largos_se_cortan(self):
        for unidad in ("Error", "x\U0001f600", "\n", "\\", "\u202e", "ñ"):
            fondo = self.c / os.fsencode(unidad).decode() / (unidad * 62)[:62]
            fondo = fondo.joinpath(*[fondo.name] * (3500 // len(os.fsencode(fondo.name))))
            fondo.parent.mkdir(parents=True)
            os.mkfifo(fondo)
        lineas = self.lineas_de("compress", self.c, "-o", self.okz)
        lineas += self.lineas_de("extract", self.okz, "-o", self.salida, "--file", "x" * 16384)
        self.assertEqual(len(lineas), 7)
        for linea in lineas:
            nombre = re.search("«(.*)…»", linea)[1].replace(r"\x65r", "er").replace(r"\x45r", "Er")
            self.assertIn(len(nombre), range(996, 1001))
            self.assertRegex(nombre, r"^([^\\]|\\\\|\\x[0-9a-f]{2})*$")

    def test_un_terminal_no_se_desordena(self):
        raro = "a\u202egpj.exe\u2066\u200f\u061cñ"
        escapado = r"a\xe2\x80\xaegpj.exe\xe2\x81\xa6\xe2\x80\x8f\xd8\x9cñ"
        self.pon(f"c/{raro}", "x")
        os.mkfifo(self.c / f"{raro}.f")
        r = self.comprime(self.c)
        self.assertIn(f"{raro}.f", r.lineas[0])
        self.assertIn(f"c/{raro}", self.lista())
        for orden in (("compress", self.c, "-o", self.okz), ("list", self.okz)):
            salida = en_terminal((MOTOR, *orden))[1]
            self.assertIn(f"{self.c if orden[0] == 'compress' else 'c'}/{escapado}", salida)
            self.assertNotRegex(salida, "[\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]")
        for n, forma in enumerate((raro, escapado)):
            self.assertTrue((self.extrae("--file", f"c/{forma}", a=str(n)) / "c" / raro).exists())


class Cerradas(Caso):
    """Standard streams that are not there."""

    def test_no_se_escribe_donde_no_se_debe(self):
        os.mkfifo(self.c / "tubería")  # worth a warning
        self.pon("c/f", "texto")
        for fichero in ("bueno", "a"):
            self.corre("compress", self.c, "-o", self.d / f"{fichero}.okz")
        bueno = self.okz.read_bytes()
        ordenes = {"compress": (self.c, "-o", self.okz, "--progress"), "list": (self.okz,),
                   "extract": (self.okz, "-o", self.salida), "check": (self.okz,)}
        for cerradas in ("0", "1", "2", "01", "02", "12", "012"):
            guion = "".join(f" {n}>&-" for n in cerradas)
            for orden, argumentos in ordenes.items():
                muda = orden in ("list", "check") and "1" in cerradas
                r = subprocess.run(["sh", "-c", f'exec "$@" {guion}', "sh", MOTOR, orden, *argumentos],
                                   capture_output=True, check=False)
                self.assertEqual(r.returncode, muda, (cerradas, orden, r.stderr))
                if muda and "2" not in cerradas:
                    self.assertEqual(r.stderr.decode(), "Error: no se puede escribir la lista: "
                                                        "la salida está cerrada\n")
                self.assertEqual(self.okz.read_bytes(), bueno)
            self.assertEqual((self.salida / "c/f").read_text(), "texto")
            shutil.rmtree(self.salida)

    @unittest.skipIf(os.geteuid() != 0, "needs root to take /dev away")
    def test_sin_dev_no_se_hace_nada(self):
        r = subprocess.run(["unshare", "-m", "sh", "-c", 'mount -t tmpfs tmpfs /dev && exec "$@" 1>&-',
                            "sh", MOTOR, "compress", self.clave, "-o", self.okz], check=False)
        self.assertEqual((r.returncode, self.okz.exists()), (1, False))


class Comprobar(Caso):
    def danado(self, datos):
        """The error, and what is said to be lost."""
        self.okz.write_bytes(datos)
        r = self.corre("check", self.okz, falla=True)
        self.assertEqual(r.stdout, b"")
        return r.lineas[-1], re.findall("^Aviso: dañado: «(.*)»$", r.stderr.decode(), re.M)

    def test_dice_lo_que_se_ha_perdido(self):
        nombres = [f"f{i}" for i in range(5)]
        for nombre in nombres:
            self.pon(f"c/{nombre}", desordenado(12 * MEBI))
        os.link(self.c / "f0", self.c / "otro")
        self.comprime(*sorted(self.c.iterdir()))
        r = self.corre("check", self.okz)
        self.assertEqual((r.stdout.decode(), r.lineas),
                         (f"El archivo está sano: 6 elementos, {60 * MEBI} bytes\n", []))
        bueno = self.okz.read_bytes()
        dos = cambiado(cambiado(bueno, 100), len(bueno) // 2)  # in two frames
        error, perdidas = self.danado(dos)
        self.assertEqual(error, "Error: el archivo está dañado")
        self.assertIn(len(perdidas), range(2, 5))
        for nombre in (*nombres, "otro"):
            r = self.corre("extract", self.okz, "-o", self.salida, "--file", nombre, falla=None)
            self.assertEqual(r.returncode != 0, nombre in perdidas, nombre)
        error, perdidas = self.danado(bueno[:len(bueno) // 2])
        self.assertEqual((error, len(perdidas)), ("Error: el archivo está incompleto", 1))


class Ayuda(Caso):
    def ayuda(self, *orden):
        r = self.corre(*orden, "--help")
        self.assertEqual(r.lineas, [])
        return r.stdout.decode()

    def opciones(self, orden):
        halladas = re.findall(r"^  (?:-h, )?(--?[a-z][a-z-]*)", self.ayuda(orden), re.M)
        self.assertGreater(len(halladas), 1)
        return halladas

    def test_cabe_y_nombra_lo_que_hay(self):
        self.assertRegex(self.corre("--version").stdout.decode(), r"^orcalin \d+\.\d+\.\d+\n$")
        for orden in ("", *ORDENES):
            texto = self.ayuda(*orden.split())
            self.assertLessEqual(max(map(len, texto.splitlines())), 80)
            self.assertTrue(texto.startswith("Uso: orcalin " + orden), texto)
            self.assertEqual([o for o in ORDENES if f"\n  {o} " in texto], [] if orden else [*ORDENES])
        for orden, culpable in (((), "orden"), (("compress",), "ORIGEN"),
                                (("list", "a", "--nada"), "--nada"),
                                (("compress", "x", "-o", "a", "--level", "30"), "--level")):
            self.assertIn(culpable, self.error(*orden))

    def test_manual_y_completado_van_con_la_ayuda(self):
        textos = {ruta.name: ruta.read_text().replace("\\-", "-") for ruta in
                  [RAIZ / "docs/man/orcalin.1", *(RAIZ / "datos/completado").iterdir()]}
        self.assertEqual(len(textos), 4)
        for orden in ORDENES:
            opciones = self.opciones(orden)
            for nombre, texto in textos.items():
                for palabra in (orden, *opciones):
                    # fish leaves the dashes out
                    self.assertRegex(texto, rf"(?<![a-z-])({palabra}|-[lso] {palabra.lstrip('-')})\b",
                                     nombre)
        if shutil.which("man"):
            r = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                                RAIZ / "docs/man/orcalin.1"], capture_output=True, check=True)
            self.assertEqual(r.stderr.decode(), "")

    def test_completado_de_bash(self):
        guion = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=();'
                 '_orcalin; printf "%s\\n" "${COMPREPLY[@]}"')
        self.pon("mis fotos.okz")
        self.pon("mi.txt")
        (self.d / "mis cosas").mkdir()
        for palabras, propuestas in (
                (("ex",), ["extract"]), (("check", "mi"), ["mis cosas", "mis fotos.okz"]),
                (("extract", "a.okz", "-o", "mi"), ["mis cosas"]),
                (("list", "--password-file", "mi"), ["mi.txt", "mis cosas", "mis fotos.okz"]),
                *(((orden, "-"), sorted(self.opciones(orden))) for orden in ORDENES)):
            r = subprocess.run(["bash", "-c", guion, "bash", RAIZ / "datos/completado/orcalin.bash",
                                "orcalin", *palabras], cwd=self.d, capture_output=True, check=True)
            self.assertEqual((sorted(r.stdout.decode().split("\n")[:-1]), r.stderr), (propuestas, b""))
