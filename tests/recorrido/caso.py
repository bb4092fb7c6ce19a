"""What the test files share: a session of its own for the process, and an
application in it. Importing this starts the session, because a process knows
one accessibility bus in its life."""

import atexit
import os
import subprocess
import unittest
from pathlib import Path

from pasosteclado import PasosTeclado
from sesion import Sesion

ARBOL = os.environ["ORCALIN_ARBOL"]
SESION = Sesion(alto=1300)
atexit.register(SESION.cierra)

import accesible  # noqa: E402  only now is there a bus to talk to
import persona  # noqa: E402


class Caso(PasosTeclado, unittest.TestCase):
    """Each test has the home folder for itself, and its application must leave
    in order and without a trace of a password."""

    def __init__(self, metodo):
        unittest.TestCase.__init__(self, metodo)
        PasosTeclado.__init__(self, persona, SESION, ARBOL)

    def setUp(self):
        SESION.vacia()

    def tearDown(self):
        if self.app is not None:
            self.cierra()
        self.assertEqual(list(SESION.tmp.glob("okz-*")), [])

    def abre(self, *ficheros, **opciones):
        super().abre(*ficheros, **opciones)
        self.addCleanup(self.remata, self.app.proceso)

    @staticmethod
    def remata(proceso):
        if proceso.poll() is None:
            proceso.kill()
        proceso.communicate()

    def espera_panel(self, titulo):
        return self.app.espera("dialog", titulo)

    def espera_sin_panel(self):
        persona.hasta(lambda: self.app.busca("dialog") is None, "los paneles cerrados")
        self.app.espera_delante()  # until then keys go nowhere

    def motores(self):
        """The engines that the application has running."""
        hijos = subprocess.run(["pgrep", "-P", str(self.app.proceso.pid), "-x", "orcalin"],
                               capture_output=True, text=True, check=False)
        return [Path("/proc") / hijo for hijo in hijos.stdout.split()]

    def vacia(self):
        """The compression screen with nothing selected."""
        self.lee("Arrastra aquí lo que quieras guardar")

    def marcada(self, casilla):
        return persona.tiene(self.app.espera("check box", casilla), "CHECKED")

    def accesible(self):
        self.assertEqual(accesible.faltas(self.app.raiz), [])
