"""What decides which screen is shown: the command line, the open panel, drops."""

import subprocess
import unittest

from caso import ARBOL, SESION, Caso, persona


class Abrir(Caso):
    def setUp(self):
        super().setUp()
        self.texto = self.casa / "a.txt"
        self.texto.write_text("hola\n")
        self.archivo = self.casa / "b.OKZ"
        subprocess.run([f"{ARBOL}/libexec/orcalin/orcalin", "compress", self.texto,
                        "-o", self.archivo], check=True, capture_output=True)

    def tearDown(self):
        self.cierra()

    def explora_y_vuelve(self):
        self.app.espera("text", "Buscar dentro de b.OKZ")
        self.app.pulsa("push button", "Guardar algo")
        self.vacia()
        self.assertIsNone(self.app.busca("push button", "Guardar algo"))

    def test_sin_ningun_archivo_en_la_orden(self):
        self.abre(self.texto)
        self.vacia()

    def test_en_la_orden_en_los_paneles_y_soltado(self):
        self.abre(self.texto, self.archivo)
        self.explora_y_vuelve()
        persona.teclas("ctrl+o")
        self.espera_panel("Abrir archivo")
        self.app.espera_foco(self.app.espera("text", "Nombre de fichero:"))
        persona.teclas("Escape")
        self.espera_sin_panel()
        self.vacia()
        persona.teclas("alt+a")
        self.app.espera("menu item", "Abrir archivo…")
        # Until the menu has come to rest it does not listen.
        persona.hasta(lambda: persona.teclas("Return") or self.app.busca("dialog"), "el panel")
        self.app.espera_foco(self.app.espera("text", "Nombre de fichero:"))
        self.assertIsNone(self.app.busca("table cell", "a.txt"), "ofrece lo que no es un archivo")
        persona.teclea(str(self.archivo))
        persona.teclas("Return")
        self.explora_y_vuelve()
        self.suelta(self.archivo)
        self.explora_y_vuelve()
        self.suelta(self.texto, self.archivo)  # with another it is saved
        self.app.lee(lambda t: t.startswith("2 archivos · "), "la cabecera")
        self.lee("b.OKZ")
        self.assertIsNone(self.app.busca("push button", "Guardar algo"))
        self.app.pulsa("push button", "Guardar")
        self.espera_panel("Guardar")
        subprocess.run([f"{ARBOL}/bin/orcalin-app", self.archivo], env=SESION.entorno(),
                       check=True)
        self.espera_sin_panel()  # what it asked for is gone
        self.explora_y_vuelve()


if __name__ == "__main__":
    unittest.main()
