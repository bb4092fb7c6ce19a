"""What every test of the engine needs: running it, trees of files, referees."""

import atexit
import os
import pathlib
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

RAIZ = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(os.fspath(RAIZ / "tests/recorrido"))  # for the trees that the tour has, too

MOTOR = os.environ["ORCALIN_MOTOR"]
PROGRESO = re.compile(r"^(\d+)/(\d+) ficheros \(([\d.]+)%\), (\d+) MiB$")
NADIE = 65534
MEBI = 1024 * 1024
ESCASO = ("--work-factor", "4")  # the usual factor costs half a second a run
SANEADOR = os.environ.get("ORCALIN_SANEADOR")  # what the engine was built with, if anything
SEGUNDO = 10 if SANEADOR else 1  # of patience
PASO = 16 if SANEADOR else 1  # where the same code runs a thousand times

# What a sanitizer finds goes into files: it is seen of runs, too, whose words nobody reads. Who keeps
# a secret can be looked into by root alone, and so searched for leaks. The thread sanitizer would
# wait a second at the end of each run; a cancel ends it with threads under way.
HALLAZGOS = pathlib.Path(tempfile.mkdtemp(prefix="orcalin-hallazgos-"))
atexit.register(shutil.rmtree, HALLAZGOS)
os.chmod(HALLAZGOS, 0o777)
COMO = f"exitcode=66:log_path={HALLAZGOS}/de"
os.environ["UBSAN_OPTIONS"] = COMO
os.environ["ASAN_OPTIONS"] = f"{COMO}:detect_leaks={int(os.geteuid() == 0)}"
os.environ["TSAN_OPTIONS"] = f"{COMO}:atexit_sleep_ms=0:report_thread_leaks=0"


def sin_saneador(porque):
    """For a test that a sanitized engine cannot pass: what is in it counts its
    own memory and time."""
    return unittest.skipIf(SANEADOR, f"under a sanitizer: {porque}")


class Caso(unittest.TestCase):
    """A folder of its own per test, and rules that hold for every run."""

    def setUp(self):
        self.d = pathlib.Path(tempfile.mkdtemp(prefix="orcalin-prueba-"))
        self.addCleanup(shutil.rmtree, self.d, ignore_errors=True)
        self.addCleanup(self.sin_hallazgos)
        self.okz, self.c, self.salida = self.d / "a.okz", self.d / "c", self.d / "salida"
        self.c.mkdir()
        self.clave = self.pon("clave", "tres tristes tigres ñ")
        self.con = ("--password-file", self.clave)
        self.en_clave = ("--encrypt", *self.con, *ESCASO)

    def sin_hallazgos(self):
        """Runs that the test started are over by now."""
        textos = [hallazgo.read_text(errors="replace") for hallazgo in HALLAZGOS.iterdir()]
        for hallazgo in HALLAZGOS.iterdir():
            hallazgo.unlink()
        self.assertEqual(textos, [], "\n".join(textos))

    def pon(self, ruta, contenido=b""):
        """A file, and the folders on the way to it."""
        fichero = self.d / ruta
        fichero.parent.mkdir(parents=True, exist_ok=True)
        fichero.write_bytes(contenido if isinstance(contenido, bytes) else contenido.encode())
        return fichero

    def corre(self, *argumentos, falla=False, **opciones):
        """Runs the engine; its standard error comes back as lines. None for
        `falla` means that either end will do."""
        r = subprocess.run([MOTOR, *argumentos], capture_output=True, timeout=120, **opciones)
        return self.juzga(r, r.returncode != 0 if falla is None else falla)

    def juzga(self, r, falla):
        r.lineas = r.stderr.decode().splitlines()
        errores = [l for l in r.lineas if "Error" in l or "error" in l]
        if not falla:
            self.assertEqual((r.returncode, errores), (0, []), r.lineas)
            return r
        self.assertEqual(r.returncode, 1, r.lineas)
        self.assertEqual(errores, r.lineas[-1:])
        self.assertTrue(errores[0].startswith("Error: "), errores)
        self.assertEqual("contraseña" in r.stderr.decode(),
                         errores[0] in ("Error: hace falta la contraseña",
                                        "Error: contraseña incorrecta"))
        return r

    def como_nadie(self):
        """The options for a run as somebody without rights, who may not even
        reach the build tree."""
        if os.geteuid() != 0:
            self.skipTest("needs root to stop being root")
        os.chmod(self.d, 0o777)
        copia = pathlib.Path(shutil.copy(MOTOR, self.d / "motor"))
        return {"user": NADIE, "group": NADIE, "extra_groups": [], "executable": copia}

    def estorbado(self, **estorbos):
        """The environment for a run that the system refuses something: estorbo.c says what."""
        fuente = pathlib.Path(__file__).with_name("estorbo.c")
        biblioteca = self.d / "estorbo.so"
        subprocess.run(["gcc", "-shared", "-fPIC", "-o", biblioteca, fuente, "-ldl"], check=True)
        os.chmod(biblioteca, 0o755)
        return {**os.environ, "LD_PRELOAD": os.fspath(biblioteca),
                "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0",
                **{f"ESTORBO_{que.upper()}": valor for que, valor in estorbos.items()}}

    def error(self, *argumentos, **opciones):
        """The text of the failure that the run must end with."""
        return self.corre(*argumentos, falla=True, **opciones).lineas[-1][len("Error: "):]

    def error_al_sacar(self, *argumentos, **opciones):
        return self.error("extract", self.okz, "-o", self.salida, *argumentos, **opciones)

    def comprime(self, *que, nivel="1", **opciones):
        nivel = ("--level", nivel) if nivel else ()
        return self.corre("compress", *que, "-o", self.okz, *nivel, **opciones)

    def lista(self, *argumentos):
        """{path as printed: (type, mode, size)}, in the order printed."""
        salida = self.corre("list", self.okz, *argumentos).stdout.decode()
        lineas = [re.fullmatch(r"(.)(\d{4}) +(\d+) ([^ ].*)", l) for l in salida.splitlines()]
        return {l[4]: (l[1], l[2], int(l[3])) for l in lineas}

    def extrae(self, *argumentos, a="salida", **opciones):
        self.corre("extract", self.okz, "-o", self.d / a, *argumentos, **opciones)
        return self.d / a

    def sh(self, orden, donde, **opciones):
        """Another program's turn, in the folder `donde`; the archive is its $1."""
        donde.mkdir(exist_ok=True)
        return subprocess.run(["sh", "-c", orden, "sh", self.okz], cwd=donde, check=True,
                              capture_output=True, **opciones)

    def arranca(self, *argumentos):
        """Starts the engine and waits until it is reading a file."""
        p = subprocess.Popen([MOTOR, *argumentos, "--progress"], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE)
        self.addCleanup(p.communicate)
        self.addCleanup(p.kill)
        hecho = 0
        while hecho == 0:
            hecho = float(PROGRESO.match(p.stderr.readline().decode().rstrip("\n"))[3])
        return p

    def termina(self, p, falla):
        _, errores = p.communicate(timeout=60)
        return self.juzga(subprocess.CompletedProcess(p.args, p.returncode, b"", errores), falla)


def desordenado(cuantos):
    return os.urandom(cuantos)


def cambiado(datos, i, bit=4):
    otro = bytearray(datos)
    otro[i] ^= bit
    return bytes(otro)


def en_terminal(orden, responde=b"", prepara=lambda: None):
    """Runs a program at a terminal of its own, where every question gets the
    same answer; its status and what it wrote."""
    pid, terminal = pty.fork()
    if pid == 0:
        prepara()
        os.execve(shutil.which(orden[0]), [*map(os.fspath, orden)], {**os.environ, "TERM": "xterm"})
    salida = b""
    try:
        while trozo := os.read(terminal, 65536):
            salida += trozo
            if responde and b"passphrase" in trozo:
                os.write(terminal, responde + b"\n")
    except OSError:  # the other end is closed
        pass
    os.close(terminal)
    return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), salida.decode()


def age(argumentos, contrasena):
    """Runs age, which asks for the password at a terminal, as often as it asks."""
    return en_terminal(["age", *argumentos], contrasena.encode())[0]
