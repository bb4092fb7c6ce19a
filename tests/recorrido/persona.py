"""What a person does with the application, through the accessibility bus, the
keyboard and the mouse. Import it only inside a session (see sesion.py)."""

import io
import os
import select
import signal
import subprocess
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

EN_EL_TECLADO = {*map(chr, range(32, 127)), *"ñÑçÇºª¿¡"} - {*"`^"}
ESPERA = 20  # seconds; a step that takes longer has failed


class NoVisto(AssertionError):
    """A step did not show what it should."""


def hasta(condicion, que, espera=ESPERA):
    """Waits until the condition gives something true, and returns it."""
    limite = time.monotonic() + espera
    while True:
        try:
            valor = condicion()
        except GLib.Error:  # a control that has just gone
            valor = None
        if valor:
            return valor
        if time.monotonic() > limite:
            raise NoVisto(f"no llegó a verse en {espera} s: {que}")
        time.sleep(0.05)


def teclas(*nombres):
    subprocess.run(["xdotool", "key", "--delay", "30", *nombres], check=True)


def teclea(texto):
    """Types what the session's keyboard has. For any other letter a key would be
    made on the spot, and on a busy machine the letter lost."""
    sin_tecla = set(texto) - EN_EL_TECLADO
    assert not sin_tecla, f"no hay teclas para {sin_tecla}"
    subprocess.run(["xdotool", "type", "--delay", "15", "--file", "-"],
                   input=texto.encode(), check=True)


def todos(nodo):
    yield nodo
    for i in range(nodo.get_child_count()):
        hijo = nodo.get_child_at_index(i)
        if hijo is not None:
            yield from todos(hijo)


def tiene(nodo, estado):
    return nodo.get_state_set().contains(getattr(Atspi.StateType, estado))


def raiz_de(pid):
    """The program of a process on the accessibility bus; None: not yet there."""
    escritorio = Atspi.get_desktop(0)
    for i in range(escritorio.get_child_count()):
        aplicacion = escritorio.get_child_at_index(i)
        if aplicacion is not None and aplicacion.get_process_id() == pid:
            return aplicacion
    return None


class Proceso:
    """A process that others started, with what is asked of one's own."""

    def __init__(self, pid):
        self.pid = pid
        self.stderr = io.BytesIO()
        self.returncode = 0  # the best that is known of it

    def poll(self):
        return None if Path(f"/proc/{self.pid}").exists() else 0

    def kill(self):
        os.kill(self.pid, signal.SIGKILL)

    def communicate(self, timeout=ESPERA):
        hasta(lambda: self.poll() == 0, "el fin del proceso", timeout)
        return None, b""

    def terminate(self):
        os.kill(self.pid, signal.SIGTERM)


def lanza(binario, ficheros, entorno):
    return subprocess.Popen([binario, *ficheros], env=entorno, stderr=subprocess.PIPE,
                            stdin=subprocess.DEVNULL)


class Aplicacion:
    """The running application, once its window is there."""

    def __init__(self, proceso):
        self.proceso = proceso
        self.raiz = hasta(self._busca_raiz, "la aplicación en el bus de accesibilidad")
        marco = self.espera("frame", "orcalin")
        # Coordinates mean something only once the window manager has placed it.
        hasta(lambda: marco.get_extents(Atspi.CoordType.SCREEN).x > 0, "la ventana en su sitio")
        hasta(lambda: tiene(marco, "ACTIVE"), "la ventana activa")

    def _busca_raiz(self):
        if self.proceso.poll() is not None:
            raise NoVisto(f"la aplicación acabó: {self.proceso.stderr.read().decode()}")
        return raiz_de(self.proceso.pid)

    def visibles(self):
        """Every control on screen as (role, name, node)."""
        self.raiz.clear_cache()
        for nodo in todos(self.raiz):
            if nodo is self.raiz or tiene(nodo, "SHOWING"):
                # Qt hides a password field's name together with its text.
                nombre = nodo.get_name() or nodo.get_description().partition(". ")[0]
                yield nodo.get_role_name(), nombre, nodo

    def busca(self, papel, nombre=None):
        for su_papel, su_nombre, nodo in self.visibles():
            if su_papel == papel and nombre in (None, su_nombre):
                return nodo
        return None

    def espera(self, papel, nombre=None, espera=ESPERA):
        return self._hasta(lambda: self.busca(papel, nombre), f"{papel} «{nombre}»", espera)

    def _hasta(self, condicion, que, espera):
        try:
            return hasta(condicion, que, espera)
        except NoVisto as fallo:
            vista = [f"{papel} «{nombre}»" for papel, nombre, _ in self.visibles()]
            raise NoVisto(f"{fallo}\na la vista: {', '.join(vista)}") from None

    def textos(self):
        return [nombre for papel, nombre, _ in self.visibles() if papel in ("label", "static")]

    def lee(self, condicion, que, espera=ESPERA):
        """Waits for a text that fulfils the condition."""
        return self._hasta(lambda: next((t for t in self.textos() if condicion(t)), None), que,
                           espera)

    def pulsa(self, papel, nombre):
        nodo = self.espera(papel, nombre)
        nodo.get_action_iface().do_action(0)
        return nodo

    @staticmethod
    def espera_foco(nodo):
        def enfocado():
            nodo.clear_cache()
            return tiene(nodo, "FOCUSED")
        hasta(enfocado, f"el foco en «{nodo.get_name()}»")

    def anuncia(self, condicion, que, espera=ESPERA):
        """Waits until the control with the focus says so: a screen reader reads
        out its name and its description, when it comes there and on change."""
        def dicho():
            return any(condicion(f"{nodo.get_name()} {nodo.get_description()}")
                       for _, _, nodo in self.visibles()
                       if tiene(nodo, "FOCUSED"))
        self._hasta(dicho, f"el foco en lo que dice «{que}»", espera)

    @staticmethod
    def activo(nodo):
        nodo.clear_cache()
        return nodo.get_description() != "no disponible"

    def ventana(self, nombre="orcalin"):
        """The X server's number of the window."""
        return hasta_ventana(self.proceso.pid, nombre)

    def espera_delante(self):
        hasta(lambda: delante() == self.ventana(), "la ventana delante")

    def minimiza(self):
        """Until it knows: of a focus that goes it takes some time to be sure."""
        marco = self.espera("frame", "orcalin")
        subprocess.run(["xdotool", "windowminimize", self.ventana()], check=True)

        def enterada():
            marco.clear_cache()
            return not tiene(marco, "ACTIVE")
        hasta(enterada, "la ventana minimizada")

    def foto(self, destino, nombre="orcalin"):
        """A picture of the window, with what the window manager puts around it."""
        time.sleep(0.35)  # the panel's fade
        subprocess.run(["import", "-window", self.ventana(nombre), str(destino)], check=True)

    def cierra(self):
        """Asks it to leave; returns the exit status and stderr."""
        if self.proceso.poll() is None:
            self.proceso.terminate()
        return self.acaba()

    def acaba(self):
        """Waits for its end; returns the exit status and stderr."""
        _, errores = self.proceso.communicate(timeout=ESPERA)
        return self.proceso.returncode, errores.decode()


class Arrastre:
    """Paths held with the mouse over a point of the screen; `suelta` drops
    them there. Paths may be bytes; what is no path is dragged as it is. With
    `por`, a point of the same window, they come from there in one move."""

    def __init__(self, arrastrador, rutas, x, y, por=None):
        self._fuente = subprocess.Popen([arrastrador, *rutas], stdout=subprocess.PIPE, bufsize=0)
        self._espera_linea(b"listo", ESPERA)
        self._raton("mousemove", 30, 30, "mousedown", 1)
        a_x, a_y = por or (x, y)
        for paso in range(1, 13):
            self._raton("mousemove", 30 + (a_x - 30) * paso // 12, 30 + (a_y - 30) * paso // 12)
            time.sleep(0.03)
        self._raton("mousemove", x + 2, y + 2)
        # A target that refuses says nothing.
        self._espera_linea(b"accion 1", 1)

    def _espera_linea(self, linea, espera):
        salida = self._fuente.stdout
        while select.select([salida], [], [], espera)[0]:
            dicha = salida.readline().strip()
            if dicha in (linea, b""):
                return

    @staticmethod
    def _raton(*orden):
        subprocess.run(["xdotool", *map(str, orden)], check=True)

    def suelta(self):
        """Drops, and returns what the source was told: "copy", "move" or none."""
        self._raton("mouseup", 1)
        try:
            dicho, _ = self._fuente.communicate(timeout=ESPERA)
        finally:
            self._fuente.kill()
        return {b"drop 0": None, b"drop 1": "copy", b"drop 2": "move"}[dicho.splitlines()[-1]]


def lleva_fuera(x, y, a_x, a_y):
    """Takes with the mouse what lies at a point and carries it to another,
    without letting go."""
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "mousedown", "1"], check=True)
    for paso in range(1, 11):
        subprocess.run(["xdotool", "mousemove", str(x + (a_x - x) * paso // 10),
                        str(y + (a_y - y) * paso // 10)], check=True)
        time.sleep(0.03)


def suelta():
    subprocess.run(["xdotool", "mouseup", "1"], check=True)


class Receptor:
    """A window of another program that copies into a folder what is dropped
    onto it."""

    def __init__(self, receptor, carpeta):
        self.proceso = subprocess.Popen([receptor, carpeta], stdout=subprocess.PIPE, bufsize=0)
        self.espera("listo")
        ancho = subprocess.run(["xdotool", "getdisplaygeometry"], capture_output=True, check=True)
        self.sitio = int(ancho.stdout.split()[0]) - 100, 100

    def espera(self, linea, espera=ESPERA):
        """What it says up to this line."""
        dicho = []
        while select.select([self.proceso.stdout], [], [], espera)[0]:
            dicho.append(self.proceso.stdout.readline().decode().strip())
            if dicho[-1] == linea:
                return dicho
            if not dicho[-1]:
                break
        raise NoVisto(f"no llegó «{linea}», sino {dicho}")

    def calla(self, espera=0.5):
        return not select.select([self.proceso.stdout], [], [], espera)[0]

    def cierra(self):
        self.proceso.kill()
        self.proceso.communicate()


def caja(nodo):
    """Where a control is on the screen: x, y, width, height, in Qt's pixels."""
    nodo.clear_cache()
    c = nodo.get_extents(Atspi.CoordType.SCREEN)
    return c.x, c.y, c.width, c.height


def centro(nodo, escala=1):
    """The middle of a control, in the screen's pixels."""
    x, y, ancho, alto = caja(nodo)
    return int((x + ancho // 2) * escala), int((y + alto // 2) * escala)


def hasta_ventana(pid, nombre, espera=ESPERA):
    """The X server's number of the process's window with such a name, once it is
    there. That of a process which has just been killed may still be there, too."""
    orden = ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(pid), "--name", nombre]
    return hasta(lambda: subprocess.run(orden, capture_output=True, text=True,
                                        check=False).stdout.split(),
                 f"la ventana «{nombre}»", espera)[-1]


def delante():
    """The X server's number of the window with the keyboard; empty: none has it."""
    return subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True,
                          check=False).stdout.strip()


def colores(x, y, ancho=1, alto=1):
    """Of the pixels of a part of the screen, each red, green, blue."""
    zona = f"{ancho}x{alto}+{x}+{y}"
    dicho = subprocess.run(["import", "-window", "root", "-crop", zona, "-depth", "8", "rgb:-"],
                           capture_output=True, check=True).stdout
    return [*zip(dicho[::3], dicho[1::3], dicho[2::3])]


def color(x, y):
    return colores(x, y)[0]
