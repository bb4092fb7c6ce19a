"""An installed application whose engine is what a test puts in its place: as a
rule one that does as a script says."""

import shutil
import subprocess
import time

from caso import ARBOL, SESION, Caso, persona

PREFIJO = SESION.prefijo
MOTOR = PREFIJO / "libexec/orcalin/orcalin"
GUION = SESION.carpeta / "guion"
YA = SESION.carpeta / "ya"  # what a script may wait for


def instala():
    subprocess.run(["cmake", "--install", ARBOL, "--prefix", PREFIJO],
                   check=True, capture_output=True)


def pon_actor():
    MOTOR.unlink(missing_ok=True)
    shutil.copy(f"{ARBOL}/tests/app/actor", MOTOR)


def pon_motor(texto):
    """Any program, and what is none."""
    MOTOR.unlink(missing_ok=True)
    MOTOR.write_text(texto)
    MOTOR.chmod(0o755)


def pon_guion(*acciones):
    GUION.write_text("\n".join(acciones) + "\n")


class CasoInstalado(Caso):
    @classmethod
    def setUpClass(cls):
        instala()
        assert MOTOR.exists(), "la instalación no pone el motor donde la aplicación lo busca"

    def setUp(self):
        super().setUp()
        YA.unlink(missing_ok=True)
        pon_actor()

    def abre_instalada(self, *ficheros, entorno=None):
        self.abre(*ficheros, binario=PREFIJO / "bin/orcalin-app",
                  entorno=dict(entorno or SESION.entorno(), ACTOR_GUION=str(GUION)))

    def viva(self):
        """It answers at once, and its menu opens and closes."""
        antes = time.monotonic()
        persona.teclas("alt+a")
        self.app.espera("menu item", "Salir")
        persona.teclas("Escape")
        persona.hasta(lambda: self.app.busca("menu item", "Salir") is None, "el menú cerrado")
        self.assertLess(time.monotonic() - antes, 5)
