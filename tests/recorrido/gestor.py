"""A file manager of the desktop's, and a program in Orcalin's place that writes
down what it was called with."""

import itertools
import os
import subprocess

import persona

COMPRIMIR = "Comprimir con Orcalin"
GUION = """#!/bin/sh
printf '%s\\0' "$@" > '{dicho}.nuevo'
mv '{dicho}.nuevo' '{dicho}'
"""


class Grabador:
    """Installs everything, with itself in the place of the application."""

    def __init__(self, sesion, arbol):
        self.prefijo = sesion.prefijo
        subprocess.run(["cmake", "--install", arbol, "--prefix", self.prefijo],
                       check=True, capture_output=True)
        self._dicho = sesion.carpeta / "dicho"
        programa = self.prefijo / "bin/orcalin-app"
        programa.unlink()
        programa.write_text(GUION.format(dicho=self._dicho))
        programa.chmod(0o755)
        datos = self.prefijo / "share"
        self.entorno = dict(
            sesion.entorno(), PATH=f"{programa.parent}:{os.environ['PATH']}",
            XDG_DATA_DIRS=f"{datos}:/usr/local/share:/usr/share",
            GIO_USE_VFS="local", GSETTINGS_BACKEND="memory")
        for orden in ("update-mime-database", datos / "mime"), \
                     ("update-desktop-database", datos / "applications"):
            subprocess.run(orden, env=self.entorno, check=True, capture_output=True)

    def toma(self):
        """The arguments of the last call, once."""
        if not self._dicho.exists():
            return None
        argumentos = self._dicho.read_bytes().split(b"\0")[:-1]
        self._dicho.unlink()
        return [os.fsdecode(argumento) for argumento in argumentos]


class Gestor(persona.Aplicacion):
    """Shows a folder. What follows selects all that is in it."""

    def __init__(self, programa, carpeta, grabador):
        # Not the parent's way to come up: its windows have names of their own.
        self.grabador = grabador
        self.proceso = subprocess.Popen([programa, carpeta], env=grabador.entorno,
                                        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.PIPE)
        self._ventana = persona.hasta_ventana(self.proceso.pid, f"^{carpeta.name}", 30)
        self.raiz = persona.hasta(self._busca_raiz, f"{programa} en el bus de accesibilidad")

    def abre_menu(self):
        """The context menu of everything. The keyboard goes to the files once
        there has been a click beside them."""
        subprocess.run(["xdotool", "windowactivate", "--sync", self._ventana], check=True)
        subprocess.run(["xdotool", "mousemove", "--window", self._ventana, "500", "400",
                        "click", "1"], check=True)
        persona.teclas("ctrl+a", "Menu")

    def orden(self, dice):
        """The first order of any menu whose name fulfils the condition."""
        self.raiz.clear_cache()
        return next((nodo for nodo in persona.todos(self.raiz)
                     if nodo.get_role_name() == "menu item" and dice(nodo.get_name())), None)

    def pide(self, rotulo):
        """One try; a folder that is still being read has not all its files yet."""
        self.abre_menu()
        nodo = persona.hasta(lambda: self.orden(lambda nombre: nombre == rotulo), rotulo, 3)
        nodo.get_action_iface().do_action(0)
        return persona.hasta(self.grabador.toma, f"la llamada de «{rotulo}»", 5)


class GestorDeTeclado(Gestor):
    """One whose menus the accessibility bus does not know. Ours are near the
    end of them, the last of so many, in no order that is told."""

    def __init__(self, programa, carpeta, grabador, desde_abajo=(3,)):
        super().__init__(programa, carpeta, grabador)
        self._lugares = itertools.cycle(desde_abajo)

    def pide(self, rotulo):
        self.abre_menu()
        persona.teclas(*["Up"] * next(self._lugares), "Return")
        return persona.hasta(self.grabador.toma, f"la llamada de «{rotulo}»", 3)


def insiste(hace, que):
    """Does it until it gives True: a folder that is still being read has not all
    its files yet, nor its menu all orders."""
    ultima = []

    def una_vez():
        try:
            ultima[:] = [hace()]
        except persona.NoVisto as fallo:
            ultima[:] = [fallo]
            persona.teclas("Escape", "Escape")
        return ultima[0] is True
    try:
        persona.hasta(una_vez, que)
    except persona.NoVisto as fallo:
        raise persona.NoVisto(f"{fallo}; lo último: {ultima!a}") from None
