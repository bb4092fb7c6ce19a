"""What the test files share: a session of its own for the process, and an
application in it. Importing this starts the session, because a process knows
one accessibility bus in its life."""

import atexit
import os
import subprocess
import unittest
from pathlib import Path

from pasos import Pasos
from sesion import Sesion

ARBOL = os.environ["ORCALIN_ARBOL"]
SESION = Sesion(alto=1300)
atexit.register(SESION.cierra)

import persona  # noqa: E402  only now is there a bus to talk to


MANDOS = ("push button", "check box", "password text", "text", "progress bar", "menu item")


class Caso(Pasos, unittest.TestCase):
    """Each test has the home folder for itself and ends its application."""

    def __init__(self, metodo):
        unittest.TestCase.__init__(self, metodo)
        Pasos.__init__(self, persona, SESION, ARBOL)

    def setUp(self):
        SESION.vacia()

    def abre(self, *ficheros, **opciones):
        super().abre(*ficheros, **opciones)
        self.addCleanup(self._remata, self.app.proceso)

    @staticmethod
    def _remata(proceso):
        if proceso.poll() is None:
            proceso.kill()
        proceso.communicate()

    def con_foco(self):
        """(role, name) of the control that the keyboard goes to. What holds it
        says so too, and a list's current item even when the list has lost it."""
        dicen = [(papel, nombre) for papel, nombre, nodo in self.app.visibles()
                 if self._tiene(nodo, "FOCUSED") and not self._tiene(nodo, "TRANSIENT")]
        return dicen[-1] if dicen else None

    @staticmethod
    def _tiene(nodo, estado):
        return nodo.get_state_set().contains(getattr(persona.Atspi.StateType, estado))

    def espera_panel(self, titulo):
        return self.app.espera("dialog", titulo)

    def espera_sin_panel(self):
        persona.hasta(lambda: self.app.busca("dialog") is None, "los paneles cerrados")

    def motores(self):
        """The engines that the application has running."""
        hijos = subprocess.run(["pgrep", "-P", str(self.app.proceso.pid), "-x", "orcalin"],
                               capture_output=True, text=True, check=False)
        return [Path("/proc") / hijo for hijo in hijos.stdout.split()]

    def restos(self):
        """Password files, and what a job left unfinished in the home folder."""
        return [*SESION.tmp.glob("okz-*"), *SESION.casa.glob("*okz*")]

    def vacia(self):
        """The compression screen with nothing selected."""
        self.lee("Arrastra aquí lo que quieras guardar")

    def marcada(self, casilla):
        nodo = self.app.espera("check box", casilla)
        return nodo.get_state_set().contains(persona.Atspi.StateType.CHECKED)

    def todo_con_nombre(self):
        """Whoever hears the window instead of seeing it is told what each
        control is and what it is for."""
        vistos = [(papel, nombre) for papel, nombre, _ in self.app.visibles()]
        self.assertEqual([papel for papel, nombre in vistos if papel in MANDOS and not nombre], [])
        self.assertNotIn("unknown", [papel for papel, _ in vistos])
