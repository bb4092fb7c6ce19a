"""Steps that more than one test takes, in the application's own terms."""

import os
import subprocess
from pathlib import Path


class Pasos:
    """A person before the application. `persona` is the module of that name,
    which can only be imported once there is a session."""

    escala = 1

    def __init__(self, persona, sesion, arbol):
        self.persona = persona
        self.sesion = sesion
        self.casa = sesion.casa
        self.arbol = Path(arbol)
        self.app = None

    def abre(self, *ficheros, binario=None, entorno=None):
        self.programa = binario or self.arbol / "bin/orcalin-app"
        self.app = self.persona.Aplicacion(
            self.persona.lanza(self.programa, ficheros, entorno or self.sesion.entorno()))

    def entrega(self, *ficheros):
        """Another start, which hands the files to the window that is there."""
        subprocess.run([self.programa, *ficheros], env=self.sesion.entorno(), check=True)

    def cierra(self):
        self.acabada(*self.app.cierra())

    @staticmethod
    def acabada(estado, errores):
        ruido = [linea for linea in errores.splitlines() if "QAccessible" not in linea]
        assert estado == 0 and not ruido, f"la aplicación acabó con {estado}: {ruido}"

    def arrastra(self, *rutas, por_el_borde=False):
        """Over the drop area; at once, or first over what is beside it."""
        zona = self.app.espera("push button", "Elegir qué guardar")
        x, y = self.persona.centro(zona, self.escala)
        borde = (int((self.persona.caja(zona)[0] - 8) * self.escala), y) if por_el_borde else None
        return self.persona.Arrastre(self.arbol / "tests/recorrido/arrastrador",
                                     [os.fsencode(ruta) for ruta in rutas],
                                     x, y, borde)

    def suelta(self, *rutas, por_el_borde=False):
        accion = self.arrastra(*rutas, por_el_borde=por_el_borde).suelta()
        assert accion == "copy", f"el arrastre acabó en {accion}: los originales corren peligro"

    def cifra(self, clave):
        self.app.pulsa("check box", "Cifrar")
        self.app.espera_foco(self.app.espera("password text", "Contraseña"))
        self.persona.teclea(clave)

    def guarda_en(self, destino, propuesto):
        self.app.pulsa("push button", "Guardar")
        nombre = self.app.espera("text", "Nombre de fichero:")
        self.app.espera_foco(nombre)
        leido = nombre.get_text_iface().get_text(0, -1)
        assert leido == propuesto, f"propone «{leido}», no «{propuesto}»"
        self.persona.teclas("ctrl+a")
        self.persona.teclea(str(destino))
        self.persona.teclas("Return")

    def lee(self, texto):
        return self.app.lee(lambda t: t == texto, f"el texto «{texto}»")
