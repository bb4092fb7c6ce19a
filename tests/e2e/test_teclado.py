"""Everything on the compression screen without a mouse, and by name."""

import unittest

from caso import Caso, persona

ZONA = ("push button", "Elegir qué guardar")
MAXIMO = ("check box", "Comprimir al máximo")
CIFRAR = ("check box", "Cifrar")
CLAVE = ("password text", "Contraseña")
GUARDAR = ("push button", "Guardar")


class Teclado(Caso):
    def setUp(self):
        super().setUp()
        (self.casa / "carpeta").mkdir()
        (self.casa / "carpeta/dentro.txt").write_bytes(bytes(600))
        (self.casa / "nota.txt").write_bytes(bytes(400))

    def tearDown(self):
        self.cierra()

    def enfoca(self, mando):
        for _ in range(8):
            if self.con_foco() == mando:
                return
            self.tabula()
        self.fail(f"el tabulador no llega a {mando}")

    def tabula(self):
        antes = self.con_foco()
        persona.teclas("Tab")
        return persona.hasta(lambda: self.con_foco() not in (None, antes) and self.con_foco(),
                             "el foco en otro sitio")

    def elige(self):
        """Marks a folder and a file in the list of the panel."""
        self.enfoca(ZONA)
        persona.teclas("space")
        self.app.espera("table cell", "nota.txt")
        self.app.espera_foco(self.app.espera("text", "Nombre de fichero:"))
        persona.teclas("shift+Tab")
        self.app.espera_foco(self.app.espera("tree"))
        persona.teclas("Home", "shift+Down")
        elegir = self.app.espera("push button", "Elegir")
        persona.hasta(lambda: self.sensible(elegir), "«Elegir» activo")
        self.enfoca(("push button", "Elegir"))
        persona.teclas("space")

    @staticmethod
    def sensible(nodo):
        nodo.clear_cache()
        return nodo.get_state_set().contains(persona.Atspi.StateType.SENSITIVE)

    def elegido(self):
        self.elige()
        self.espera_sin_panel()
        self.lee("2 archivos · 1 kB")

    def test_se_eligen_carpetas_y_archivos_a_la_vez(self):
        self.abre()
        self.elegido()
        for nombre in ("carpeta", "nota.txt"):
            self.lee(nombre)

    def test_orden_del_tabulador(self):
        self.abre()
        self.elegido()
        self.enfoca(ZONA)
        self.assertEqual([self.tabula() for _ in range(3)], [MAXIMO, CIFRAR, GUARDAR])
        self.enfoca(CIFRAR)
        persona.teclas("space")
        persona.hasta(lambda: self.con_foco() == CLAVE, "el foco en la contraseña")
        persona.teclea("x")
        self.enfoca(ZONA)
        self.assertEqual([self.tabula() for _ in range(4)], [MAXIMO, CIFRAR, CLAVE, GUARDAR])

    def test_intro_es_guardar_en_cualquier_sitio(self):
        self.abre()
        self.elegido()
        self.enfoca(CIFRAR)
        persona.teclas("space")
        persona.hasta(lambda: self.con_foco() == CLAVE, "el foco en la contraseña")
        persona.teclea("x")
        for mando in (ZONA, MAXIMO, CIFRAR, CLAVE, GUARDAR):
            with self.subTest(mando=mando):
                self.enfoca(mando)
                persona.teclas("Return")
                self.espera_panel("Guardar")
                persona.teclas("Escape")
                self.espera_sin_panel()

    def test_escape_cierra_los_paneles(self):
        self.abre()
        self.enfoca(ZONA)
        persona.teclas("space")
        self.espera_panel("Elegir archivos y carpetas")
        persona.teclas("Escape")
        self.espera_sin_panel()
        self.vacia()

    def test_todo_tiene_nombre(self):
        self.abre()
        self.todo_con_nombre()
        self.app.pulsa(*MAXIMO)
        self.app.pulsa(*CIFRAR)
        self.app.espera_foco(self.app.espera(*CLAVE))
        self.elegido()
        self.todo_con_nombre()


if __name__ == "__main__":
    unittest.main()
