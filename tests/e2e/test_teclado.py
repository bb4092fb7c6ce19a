"""Everything without a mouse."""

import os
import signal
import unittest

from caso import Caso, persona
from pasosteclado import PasosTeclado
from visor import Visor

ZONA = ("push button", "Elegir qué guardar")
MAXIMO = ("check box", "Comprimir al máximo")
CIFRAR = ("check box", "Cifrar")
CLAVE = ("password text", "Contraseña")
GUARDAR = ("push button", "Guardar")
OTRA = ("push button", "Guardar otra cosa")
LETRAS = "ñ 1º"


class Teclado(PasosTeclado, Caso):
    def setUp(self):
        super().setUp()
        (self.casa / "carpeta").mkdir()
        (self.casa / "carpeta/dentro").write_bytes(os.urandom(12_000_000))  # takes its time
        (self.casa / "nota.txt").write_text("hola\n")

    def elige(self):
        """A folder and a file, in the list of the panel."""
        self.enfoca(ZONA, "space")
        self.app.espera("table cell", "nota.txt")
        self.app.espera_foco(self.app.espera("text", "Nombre de fichero:"))
        persona.teclas("shift+Tab")
        self.app.espera_foco(self.app.espera("tree"))
        persona.teclas("Home", "shift+Down")
        self.espera_sensible("Elegir")
        self.enfoca(("push button", "Elegir"), "space")
        self.espera_sin_panel()
        for dicho in ("2 archivos · 12.0 MB", "carpeta", "nota.txt"):
            self.lee(dicho)

    def test_orden_intro_y_escape(self):
        self.abre()
        self.enfoca(ZONA, "space")
        self.renuncia("Elegir archivos y carpetas")
        self.vacia()
        self.elige()
        self.enfoca(ZONA)
        self.assertEqual([self.tabula() for _ in range(3)], [MAXIMO, CIFRAR, GUARDAR])
        self.enfoca(CIFRAR, "space")
        self.espera_foco(CLAVE)
        persona.teclea("x")
        self.enfoca(ZONA)
        self.assertEqual([self.tabula() for _ in range(4)], [MAXIMO, CIFRAR, CLAVE, GUARDAR])
        for mando in (ZONA, MAXIMO, CIFRAR, CLAVE, GUARDAR):
            with self.subTest(mando=mando):
                self.enfoca(mando)
                self.app.proceso.send_signal(signal.SIGSTOP)
                persona.teclas("Return", "Return")  # before it can do anything
                self.app.proceso.send_signal(signal.SIGCONT)
                self.renuncia("Guardar")
        self.cierra()

    def test_un_viaje_entero(self):
        archivo, sacado = self.sesion.tmp / "archivo.okz", self.sesion.tmp / "sacado"
        sacado.mkdir()
        entorno = self.sesion.entorno()
        visor = Visor(entorno)
        self.abre(entorno=entorno)

        # Given up, tried again, and from there to the next thing.
        self.elige()
        self.enfoca(MAXIMO, "space")
        self.enfoca(CIFRAR, "space")
        self.espera_foco(CLAVE)
        persona.teclea(LETRAS)
        persona.teclas("Return")
        self.escribe_en_panel("Nombre de fichero:", archivo)
        self.espera_foco(("push button", "Cancelar"))
        persona.teclas("Return")
        self.app.anuncia(lambda dicho: "guardado cancelado" in dicho, "el final")
        persona.teclas("Escape")
        self.enfoca(MAXIMO, "space", "Return")
        self.escribe_en_panel("Nombre de fichero:", archivo)
        self.app.anuncia(lambda dicho: "Guardado: de 12.0 MB a 12.0 MB" in dicho, "el final", 60)
        self.assertEqual(self.con_foco(), OTRA)
        x, y, _, alto = persona.caja(self.app.espera(*OTRA))
        # It came by the focus without Tab, and shows it.
        persona.hasta(lambda: max(persona.color(x + 1, y + alto // 2)) < 40, "el foco a la vista")
        persona.teclas("Return")
        self.espera_foco(ZONA)

        # Opened, searched, looked at, taken out.
        persona.teclas("ctrl+o")
        self.escribe_en_panel("Nombre de fichero:", archivo)
        self.app.anuncia(lambda dicho: "Este archivo está cifrado" in dicho, "la pregunta")
        persona.teclea(LETRAS)
        persona.teclas("Return")
        self.app.espera_foco(self.buscador())
        persona.teclea("nota")
        self.app.anuncia(lambda dicho: "1 de 3" in dicho, "lo que queda")
        persona.teclas("Down")
        self.app.anuncia(lambda dicho: "nota.txt, archivo, 5 bytes" in dicho, "la fila")
        for orden in (["Menu"], ["Return"], ["Return"]):
            persona.teclas(*orden)
            if orden == ["Menu"]:
                self.app.anuncia(lambda dicho: "Abrir" in dicho, "la orden")
            else:
                ruta, _ = persona.hasta(visor.toma, "el archivo en su aplicación")
                self.assertTrue(ruta.endswith(b"/nota.txt"), ruta)
                self.app.anuncia(lambda dicho: "nota.txt, archivo" in dicho, "la fila")
        self.enfoca(("push button", "Recuperar este"), "space")
        self.escribe_en_panel("Directorio:", sacado)
        self.app.anuncia(lambda dicho: "Recuperado" in dicho, "el final")
        self.assertEqual([*sacado.rglob("*.txt")], [sacado / "nota.txt"])
        persona.teclas("Escape")
        self.lee("1 de 3")
        persona.teclas("Escape")
        self.lee("3 elementos")
        self.enfoca(("push button", "Guardar algo"), "space")

        # And out, past the question.
        self.vacia()
        self.enfoca(ZONA, "space")
        self.escribe_en_panel("Nombre de fichero:", self.casa / "carpeta/dentro")
        self.lee("12.0 MB")
        self.enfoca(MAXIMO, "space", "Return")
        self.escribe_en_panel("Nombre de fichero:", self.casa / "otro.okz")
        self.espera_foco(("push button", "Cancelar"))
        persona.teclas("ctrl+q")
        self.app.anuncia(lambda dicho: "¿Salir sin terminar de guardar?" in dicho, "la pregunta")
        self.assertEqual(self.tabula("shift+Tab"), ("push button", "Salir"))
        persona.teclas("space")
        self.acabada(*self.app.acaba())
        self.assertFalse((self.casa / "otro.okz").exists())


if __name__ == "__main__":
    unittest.main()
