"""Everything without a mouse."""

import os
import signal

from caso import Caso, persona
from visor import Visor

ZONA = ("push button", "Elegir qué guardar")
MAXIMO = ("check box", "Comprimir al máximo")
CIFRAR = ("check box", "Cifrar")
CLAVE = ("password text", "Contraseña")
GUARDAR = ("push button", "Guardar")
OTRA = ("push button", "Guardar otra cosa")
CANCELAR = ("push button", "Cancelar")
FICHERO = "Nombre de fichero:"
LETRAS = "ñ 1º"


class Teclado(Caso):
    def setUp(self):
        super().setUp()
        (self.casa / "carpeta").mkdir()
        self.grande = self.casa / "carpeta/dentro"
        self.grande.write_bytes(os.urandom(12_000_000))  # takes its time
        self.nota = self.casa / "nota.txt"
        self.nota.write_text("hola\n")
        self.archivo = self.casa / "archivo.okz"

    def test_orden_intro_y_escape(self):
        self.abre(self.nota)
        self.enfoca(ZONA, "space")
        self.renuncia("Elegir archivos y carpetas")
        self.vacia()
        self.suelta(self.nota)
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

    def test_un_viaje_entero(self):
        entorno = self.sesion.entorno()
        self.visor = Visor(entorno)
        self.abre(entorno=entorno)
        self.elige()
        self.guarda()
        self.abre_por_el_menu()
        self.mira_lo_hallado()
        self.saca()
        self.sale_a_medias()

    def elige(self):
        """A folder and a file, in the list of the panel."""
        self.enfoca(ZONA, "space")
        for nombre in ("carpeta", "nota.txt"):
            self.app.espera("table cell", nombre)
        self.app.espera_foco(self.app.espera("text", FICHERO))
        persona.teclas("shift+Tab")
        self.app.espera_foco(self.app.espera("tree"))
        persona.teclas("ctrl+a")
        self.espera_sensible("Elegir")
        self.enfoca(("push button", "Elegir"), "space")
        self.espera_sin_panel()
        for dicho in ("2 archivos · 12.0 MB", "carpeta", "nota.txt"):
            self.lee(dicho)

    def guarda(self):
        """Given up, and tried again."""
        self.enfoca(MAXIMO, "space")
        self.enfoca(CIFRAR, "space")
        self.espera_foco(CLAVE)
        persona.teclea(LETRAS)
        persona.teclas("Return")
        self.escribe_en_panel(FICHERO, self.archivo)
        self.espera_foco(CANCELAR)
        persona.teclas("Return")
        self.app.anuncia(lambda dicho: "guardado cancelado" in dicho, "el final")
        persona.teclas("Escape")
        self.enfoca(MAXIMO, "space", "Return")
        self.escribe_en_panel(FICHERO, self.archivo)
        self.app.anuncia(lambda dicho: "Guardado: de 12.0 MB a 12.0 MB" in dicho, "el final", 60)
        self.assertEqual(self.con_foco(), OTRA)
        x, y, _, alto = persona.caja(self.app.espera(*OTRA))
        # It came by the focus without Tab, and shows it.
        persona.hasta(lambda: max(persona.color(x + 1, y + alto // 2)) < 40, "el foco a la vista")
        persona.teclas("Return")
        self.espera_foco(ZONA)

    def abre_por_el_menu(self):
        persona.teclas("ctrl+o")
        self.renuncia("Abrir archivo")
        persona.teclas("alt+a")
        self.app.espera("menu item", "Abrir archivo…")
        # Until the menu has come to rest it does not listen.
        persona.hasta(lambda: persona.teclas("Return") or self.app.busca("dialog"), "el panel")
        self.app.espera("table cell", self.archivo.name)
        self.assertIsNone(self.app.busca("table cell", "nota.txt"), "ofrece lo que no lo es")
        self.escribe_en_panel(FICHERO, self.archivo)
        self.app.anuncia(lambda dicho: "Este archivo está cifrado" in dicho, "la pregunta")
        persona.teclea(LETRAS)
        persona.teclas("Return")

    def mira_lo_hallado(self):
        self.app.espera_foco(self.buscador())
        persona.teclea("nota")
        self.app.anuncia(lambda dicho: "1 de 3" in dicho, "lo que queda")
        persona.teclas("Down")
        fila = "nota.txt, archivo, 5 bytes"
        self.app.anuncia(lambda dicho: fila in dicho, "la fila")
        persona.teclas("Menu")
        self.app.anuncia(lambda dicho: "Abrir" in dicho, "la orden")
        for _ in "menú", "fila":
            persona.teclas("Return")
            ruta, _ = persona.hasta(self.visor.toma, "el archivo en su aplicación")
            self.assertTrue(ruta.endswith(b"/nota.txt"), ruta)
            self.app.anuncia(lambda dicho: fila in dicho, "la fila")

    def saca(self):
        sacado = self.casa / "sacado"
        sacado.mkdir()
        self.enfoca(("push button", "Recuperar este"), "space")
        self.escribe_en_panel("Directorio:", sacado)
        self.app.anuncia(lambda dicho: "Recuperado" in dicho, "el final")
        self.assertEqual([*sacado.rglob("*.txt")], [sacado / "nota.txt"])
        persona.teclas("Escape")
        self.lee("1 de 3")
        persona.teclas("Escape")
        self.lee("3 elementos")
        self.enfoca(("push button", "Guardar algo"), "space")

    def sale_a_medias(self):
        self.vacia()
        self.enfoca(ZONA, "space")
        self.escribe_en_panel(FICHERO, self.grande)
        self.lee("12.0 MB")
        self.enfoca(MAXIMO, "space", "Return")
        self.escribe_en_panel(FICHERO, self.casa / "otro.okz")
        self.espera_foco(CANCELAR)
        motor, = self.motores()
        persona.teclas("ctrl+q")
        self.app.anuncia(lambda dicho: "¿Salir sin terminar de guardar?" in dicho, "la pregunta")
        self.assertTrue(motor.exists())
        self.assertEqual(self.tabula("shift+Tab"), ("push button", "Salir"))
        persona.teclas("space")
        self.acabada(*self.app.acaba())
        self.assertFalse(motor.exists())
        self.assertEqual([*self.casa.glob("*.okz"), *self.casa.glob(".orcalin*")], [self.archivo])
