"""What every test of the engine needs: running it, trees of files, referees."""

import os
import pathlib
import pty
import re
import shutil
import stat
import subprocess
import tempfile
import unittest

MOTOR = os.environ["ORCALIN_MOTOR"]
PROGRESO = re.compile(r"^(\d+)/(\d+) ficheros \(([\d.]+)%\), (\d+) MiB$")
NADIE = 65534
ESCASO = ("--work-factor", "4")  # the usual factor costs half a second a run


class Caso(unittest.TestCase):
    """A folder of its own per test, and rules that hold for every run."""

    def setUp(self):
        self.d = pathlib.Path(tempfile.mkdtemp(prefix="orcalin-prueba-"))
        self.addCleanup(shutil.rmtree, self.d, ignore_errors=True)
        self.okz = self.d / "a.okz"
        self.clave = self.d / "clave"
        self.clave.write_text("tres tristes tigres ñ")

    def corre(self, *argumentos, falla=False, **opciones):
        """Runs the engine; its standard error comes back as lines."""
        r = subprocess.run([MOTOR, *argumentos], capture_output=True, timeout=120, **opciones)
        return self.juzga(r, falla)

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
        copia = pathlib.Path(shutil.copy(MOTOR, self.d / "motor"))
        return {"user": NADIE, "group": NADIE, "extra_groups": [], "executable": copia}

    def error(self, *argumentos, **opciones):
        """The text of the failure that the run must end with."""
        return self.corre(*argumentos, falla=True, **opciones).lineas[-1][len("Error: "):]

    def comprime(self, *origenes, nivel="1", **opciones):
        return self.corre("compress", *origenes, "-o", self.okz, "--level", nivel, **opciones)

    def cifra(self, *origenes):
        self.corre("compress", *origenes, "-o", self.okz, "--level", "1", "--encrypt",
                   "--password-file", self.clave, *ESCASO)

    def lista(self, *argumentos):
        """{path as printed: (type, mode, size)}, in the order printed."""
        salida = self.corre("list", self.okz, *argumentos).stdout.decode()
        lineas = [re.fullmatch(r"(.)(\d{4}) +(\d+) ([^ ].*)", l) for l in salida.splitlines()]
        return {l[4]: (l[1], l[2], int(l[3])) for l in lineas}

    def extrae(self, *argumentos, a="salida", **opciones):
        destino = self.d / a
        self.corre("extract", self.okz, "-o", destino, *argumentos, **opciones)
        return destino

    def arranca(self, *argumentos):
        """Starts the engine and waits until it is reading a file."""
        p = subprocess.Popen([MOTOR, *argumentos, "--progress"], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE)
        self.addCleanup(p.communicate)
        self.addCleanup(p.kill)
        while True:
            linea = p.stderr.readline().decode().rstrip("\n")
            self.assertRegex(linea, PROGRESO)
            if float(PROGRESO.match(linea)[3]) > 0:
                break
        return p

    def termina(self, p, falla):
        _, errores = p.communicate(timeout=60)
        return self.juzga(subprocess.CompletedProcess(p.args, p.returncode, b"", errores), falla)


def foto(raiz):
    """Everything that has to survive, by path relative to `raiz`, in bytes."""
    raiz = os.fsencode(raiz)
    vistos, fichas = {}, {}
    for carpeta, hijas, ficheros in os.walk(raiz):
        for nombre in [b"."] * (carpeta != raiz) + ficheros + [
                h for h in hijas if os.path.islink(os.path.join(carpeta, h))]:
            ruta = os.path.normpath(os.path.join(carpeta, nombre))
            e = os.lstat(ruta)
            relativa = os.path.relpath(ruta, raiz)
            contenido = (os.readlink(ruta) if stat.S_ISLNK(e.st_mode) else
                         pathlib.Path(os.fsdecode(ruta)).read_bytes()
                         if stat.S_ISREG(e.st_mode) else None)
            atributos = {a: os.getxattr(ruta, a, follow_symlinks=False)
                         for a in os.listxattr(ruta, follow_symlinks=False)}
            hermano = vistos.setdefault(e.st_ino, relativa)
            fichas[relativa] = (e.st_mode, e.st_mtime_ns, contenido, atributos, hermano)
    return fichas


def siembra(raiz):
    """A tree with one of everything that people keep, at `raiz`."""
    (raiz / "sub/vacía").mkdir(parents=True)
    nombres = ["normal.txt", " espacio delante", "detrás ", "-guion", "--file", "a\nb\tc", "\"'\\$",
               "canci\u00f3n", "cancio\u0301n", os.fsdecode(b"latin\xf1\xff"), "l\u2028\u0085s",
               "x" * 255, "Error: contraseña"]
    for i, nombre in enumerate(nombres):
        (raiz / nombre).write_bytes(nombre.encode(errors="surrogateescape") * i)
    profunda = raiz / "/".join(["carpeta de nombre largo"] * 12)
    profunda.mkdir(parents=True)
    (profunda / "ñandú").write_text("hondo")
    os.link(raiz / "normal.txt", raiz / "sub/duro")
    os.symlink("normal.txt", raiz / "blando")
    os.symlink("../no/existe/ñ", raiz / "sub/roto")
    os.symlink("sub", raiz / "a carpeta")
    os.setxattr(raiz / "normal.txt", "user.nota", b"uno\0dos")
    os.chmod(raiz / "-guion", 0o640)
    os.chmod(raiz / "detrás ", 0o4755)
    for n, ruta in enumerate([*raiz.rglob("*"), raiz]):
        os.utime(ruta, ns=(0, 1_234_567_890_123_456_789 + n), follow_symlinks=False)
    os.utime(raiz / "-guion", ns=(0, -5_000_000_000))
    os.chmod(raiz / "sub/vacía", 0o555)
    os.chmod(raiz / "sub", 0o555)


def desordenado(cuantos):
    return os.urandom(cuantos)


def age(argumentos, contrasena):
    """Runs age, which asks for the password at a terminal, as often as it asks."""
    pid, terminal = pty.fork()
    if pid == 0:
        os.execvp("age", ["age", *map(os.fspath, argumentos)])
    try:
        while True:
            if b"passphrase" in os.read(terminal, 1024):
                os.write(terminal, contrasena.encode() + b"\n")
    except OSError:  # the other end is closed
        pass
    os.close(terminal)
    return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
