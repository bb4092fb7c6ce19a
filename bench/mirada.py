"""What a program shows and uses, seen from outside: the X server's picture, and
the processor time and memory of the program with all that it has started."""

import ctypes
import mmap
import os
import signal
import struct
import subprocess
import time
from collections import Counter
from pathlib import Path

PASO_X, PASO_Y = 5, 3  # of the picture that is looked at: letters are larger
CALMA = 0.7            # seconds in which nothing happens any more
IGUAL = 16             # levels of 255 that do not count as another colour
COMPLETA = 0.95        # of what is to be seen: a caret blinks, a scroll bar fades
TIC = 1 / os.sysconf("SC_CLK_TCK")


class Pantalla:
    """The picture as the server keeps it (Xvfb -fbdir), so that looking at it
    costs the program under measurement nothing."""

    def __init__(self, fichero):
        with open(fichero, "rb") as abierto:
            self._memoria = mmap.mmap(abierto.fileno(), 0, prot=mmap.PROT_READ)
        cabeza = struct.unpack(">25I", self._memoria[:100])
        self._inicio, self._linea = cabeza[0] + cabeza[19] * 12, cabeza[12]
        self._ancho, self._alto = cabeza[4], cabeza[5]

    def mira(self):
        """One level of every so many points."""
        inicio, linea = self._inicio + 1, self._linea
        return b"".join(
            self._memoria[inicio + y * linea:inicio + y * linea + 4 * self._ancho:4 * PASO_X]
            for y in range(0, self._alto, PASO_Y))


def contenido(antes, final):
    """The points that make up what is to be seen: not what was there before,
    nor the ground that most of the window consists of."""
    nuevos = [i for i, (a, b) in enumerate(zip(antes, final)) if a != b]
    fondo = Counter(final[i] for i in nuevos).most_common(1)
    return [i for i in nuevos if final[i] != fondo[0][0]]


def parte(cuadro, final, puntos):
    iguales = sum(1 for i in puntos if abs(cuadro[i] - final[i]) <= IGUAL)
    return iguales / len(puntos) if puntos else 0


class Programa:
    """A program under measurement, in a session of its own."""

    def __init__(self, orden, entorno, carpeta):
        self.inicio = time.perf_counter()
        self._hijo = subprocess.Popen(orden, env=entorno, cwd=carpeta, start_new_session=True,
                                      stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                      stderr=subprocess.DEVNULL)
        self.pid = self._hijo.pid

    def vive(self):
        return self._hijo.poll() is None

    def procesos(self, pid=None):
        """It and all below it."""
        yield pid or self.pid
        try:
            for tarea in os.listdir(f"/proc/{pid or self.pid}/task"):
                hijos = Path(f"/proc/{pid or self.pid}/task/{tarea}/children").read_text()
                for hijo in hijos.split():
                    yield from self.procesos(int(hijo))
        except OSError:  # it has just gone
            return

    def cpu(self):
        """Seconds of processor time, of those that have ended as well."""
        total = 0
        for pid in self.procesos():
            try:
                campos = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
            except OSError:
                continue
            total += sum(map(int, campos[11:15]))
        return total * TIC

    def quiere_correr(self):
        """Whether some thread only waits for its turn, or for the disk."""
        for pid in self.procesos():
            for tarea in Path(f"/proc/{pid}/task").glob("*/stat"):
                try:
                    if tarea.read_text().rsplit(")", 1)[1].split()[0] in "RD":
                        return True
                except OSError:  # it has just gone
                    continue
        return False

    def memoria(self):
        """MiB, of what is shared its part."""
        total = 0
        for pid in self.procesos():
            try:
                lineas = Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
            except OSError:
                continue
            total += sum(int(l.split()[1]) for l in lineas if l.startswith("Pss:"))
        return total / 1024

    def acaba(self):
        pids = list(self.procesos())
        for senal, plazo in ((signal.SIGTERM, 3), (signal.SIGKILL, 10)):
            for pid in pids:
                try:
                    os.kill(pid, senal)
                except ProcessLookupError:
                    pass
            limite = time.monotonic() + plazo
            while time.monotonic() < limite:
                if not self.vive() and not any(os.path.exists(f"/proc/{p}") for p in pids):
                    return
                time.sleep(0.01)


class Medida:
    """What was seen from one moment on until all was calm."""

    def __init__(self, cuadros, usos, todo):
        self._cuadros, self._usos = cuadros, usos
        antes, final = cuadros[0][1], cuadros[-1][1]
        puntos = contenido(antes, final)
        if todo:
            puntos = [i for i, (a, b) in enumerate(zip(antes, final)) if abs(a - b) > IGUAL]
        self.completa = cuadros[-1][0]
        for t, cuadro in reversed(cuadros):
            if parte(cuadro, final, puntos) < COMPLETA:
                break
            self.completa = t
        # A caret that blinks uses a little for ever.
        self.ociosa = next(t for t, uso in usos if uso >= usos[-1][1] - 4 * TIC)

    @property
    def fin(self):
        return max(self.completa, self.ociosa)


def observa(pantalla, programa, inicio, antes, plazo=60, todo=False, cada=0.002):
    """Follows the screen from `inicio`, when it was `antes`, until there is
    something new and neither the picture nor the processor moves any more.
    None when that takes longer than `plazo` seconds, or the program ends. To
    look `cada` so many seconds takes a processor's time itself."""
    cuadros, usos = [(inicio, antes)], [(inicio, 0.0)]
    while True:
        ahora = time.perf_counter()
        cuadro = pantalla.mira()
        if cuadro != cuadros[-1][1]:
            cuadros.append((ahora, cuadro))
        if ahora - usos[-1][0] > 0.02:
            usos.append((ahora, programa.cpu()))
            # A busy machine may let a program wait for longer than that.
            if calma(cuadros, usos, ahora) and not programa.quiere_correr():
                return Medida(cuadros, usos, todo)
            if ahora - inicio > plazo or not programa.vive():
                return None
        time.sleep(cada)


def calma(cuadros, usos, ahora):
    if ahora - cuadros[0][0] < CALMA or len(cuadros) < 2:
        return False
    hace = ahora - CALMA
    uso = next(u for t, u in reversed(usos) if t <= hace) if usos[0][0] <= hace else 0
    if usos[-1][1] - uso > 0.1 * CALMA:
        return False
    antes = next(c for t, c in reversed(cuadros) if t <= hace)
    distintos = sum(1 for a, b in zip(antes, cuadros[-1][1]) if a != b)
    return distintos < 0.002 * len(antes)


class Teclado:
    """Keys as a person presses them, at a known moment."""

    def __init__(self):
        self._x11, self._xtst = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XStringToKeysym.restype = ctypes.c_ulong
        self._pantalla = ctypes.c_void_p(self._x11.XOpenDisplay(None))

    def _codigo(self, nombre):
        simbolo = self._x11.XStringToKeysym(nombre.encode())
        return self._x11.XKeysymToKeycode(self._pantalla, ctypes.c_ulong(simbolo))

    def pulsa(self, *nombres):
        """Together; returns when."""
        codigos = [self._codigo(n) for n in nombres]
        cuando = time.perf_counter()
        for codigo in codigos:
            self._xtst.XTestFakeKeyEvent(self._pantalla, codigo, 1, ctypes.c_ulong(0))
        for codigo in reversed(codigos):
            self._xtst.XTestFakeKeyEvent(self._pantalla, codigo, 0, ctypes.c_ulong(0))
        self._x11.XFlush(self._pantalla)
        return cuando
