"""Steps that more than one test takes in the archive browser."""

import contextlib
import os
import signal
import subprocess
import time

from pasos import Pasos

# Two clicks at one place within this time would be a double click, in seconds.
DOS_VECES = 0.45


class PasosExplorador(Pasos):
    """A person before the contents of an archive."""

    def comprime(self, origenes, archivo, clave=None):
        """Makes an archive without the window."""
        cifrado = [] if clave is None else ["--encrypt"]
        self.manda_al_motor(["compress", *origenes, "-o", archivo, *cifrado], clave)

    def manda_al_motor(self, orden, clave=None):
        secreto = self.sesion.carpeta / "secreto"
        if clave is not None:
            secreto.write_text(clave)
            orden = [*orden, "--password-file", secreto]
        subprocess.run([self.arbol / "libexec/orcalin/orcalin", *orden], check=True,
                       capture_output=True)
        secreto.unlink(missing_ok=True)

    # What is on screen.

    def filas(self):
        return [nombre for papel, nombre, _ in self.app.visibles()
                if papel == "list item" and ", " in nombre]

    def fila(self, nombre, carpeta=None):
        """The row of an entry; in that folder, if one is named."""
        principio = f"{nombre}, " if carpeta is None else f"{nombre}, en {carpeta}, "
        def busca():
            return next((nodo for papel, suyo, nodo in self.app.visibles()
                         if papel == "list item" and suyo.startswith(principio)), None)
        return self.persona.hasta(busca, f"la fila de «{nombre}»")

    def elegida(self, fila):
        fila.clear_cache()
        return self.persona.tiene(fila, "SELECTED")

    def buscador(self):
        campo = self.persona.hasta(
            lambda: next((nodo for papel, nombre, nodo in self.app.visibles()
                          if papel == "text" and nombre.startswith("Buscar dentro de ")), None),
            "el campo de búsqueda")
        return campo

    def buscado(self):
        return self.buscador().get_text_iface().get_text(0, -1)

    def recuperables(self, rotulo):
        boton = self.app.espera("push button", rotulo)
        self.persona.hasta(lambda: self.app.activo(boton), f"«{rotulo}» activo")

    # What is done.

    def escribe_en_busca(self, texto):
        self.persona.teclas("ctrl+f")
        self.app.espera_foco(self.buscador())
        self.persona.teclea(texto)
        self.persona.hasta(lambda: self.buscado() == texto, f"«{texto}» en la búsqueda")

    def busca(self, texto, cuenta):
        self.escribe_en_busca(texto)
        self.lee(cuenta)

    def raton(self, nodo, *gesto):
        x, y = self.persona.centro(nodo, self.escala)
        subprocess.run(["xdotool", "mousemove", str(x), str(y), *gesto], check=True)

    def pincha(self, nodo, tecla=None):
        time.sleep(DOS_VECES)
        if tecla is None:
            self.raton(nodo, "click", "1")
        else:
            self.raton(nodo, "keydown", tecla, "click", "1", "keyup", tecla)

    def abre_fila(self, nodo):
        self.raton(nodo, "click", "--repeat", "2", "--delay", "60", "1")

    def lleva(self, nodo, receptor):
        """Carries a row over another program's window."""
        time.sleep(DOS_VECES)
        self.persona.lleva_fuera(*self.persona.centro(nodo, self.escala), *receptor.sitio)

    def manda_clave(self, clave):
        campo = self.app.espera("password text", "Contraseña")
        self.app.espera_foco(campo)
        self.persona.teclas("ctrl+a")
        self.persona.teclea(clave)
        self.persona.teclas("Return")

    def dice_donde(self, destino, pregunta):
        """Answers the panel that asks for a folder."""
        self.app.espera("dialog", pregunta)
        campo = self.app.espera("text", "Directorio:")
        self.app.espera_foco(campo)
        self.persona.teclas("ctrl+a")
        self.persona.teclea(str(destino))
        self.persona.teclas("Return")

    def recupera(self, boton, destino):
        todo = boton == "Recuperar todo"
        self.app.pulsa("push button", boton)
        self.dice_donde(destino, "¿Dónde dejo todo el contenido?" if todo else "¿Dónde lo dejo?")

    def recuperado(self, espera=60):
        self.app.lee(lambda t: t == "Recuperado", "el final de la recuperación", espera)

    @contextlib.contextmanager
    def motor_retenido(self):
        """The engine stands still inside: what is on screen meanwhile can be
        looked at for as long as it takes."""
        def motor():
            hijos = subprocess.run(["pgrep", "-P", str(self.app.proceso.pid), "-x", "orcalin"],
                                   capture_output=True, text=True, check=False)
            return hijos.stdout.split()
        hijo = int(self.persona.hasta(motor, "el motor en marcha")[0])
        os.kill(hijo, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(hijo, signal.SIGCONT)
