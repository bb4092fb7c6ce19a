"""The archive browser before an engine that does as a script says: its words as
they are shown, and that nothing an engine does can hang the window."""

import subprocess
import unittest

from caso import SESION, persona
from instalado import MOTOR, CasoInstalado, pon_actor, pon_guion, pon_motor
from pasosexplorador import PasosExplorador

LISTADO = (r"salida d0755          0 docs\n-0644       1234 docs/a.txt\n"
           r"-0644         10 docs/b.txt\n", "sale 0")
UNO = (r"salida -0644          1 nuevo.txt\n", "sale 0")
APUNTADO = SESION.carpeta / "apuntado"
YA = SESION.carpeta / "ya"
CHARLATAN = """#!/bin/sh
yes basura | head -n 500000
yes -- '- basura que parece algo' | head -n 500000
"""


class Guionizado(PasosExplorador, CasoInstalado):
    def setUp(self):
        super().setUp()
        APUNTADO.unlink(missing_ok=True)
        YA.unlink(missing_ok=True)
        self.archivo = self.casa / "docs.okz"
        self.archivo.write_text("lo que haya dentro no lo mira nadie")

    def explora(self, *guion):
        pon_guion(*guion)
        self.abre_instalada(self.archivo)

    def lista(self):
        self.explora(*LISTADO)
        self.lee("3 elementos")

    def falla_con(self, mensaje):
        self.app.espera("push button", "Volver")
        self.lee(mensaje)
        self.todo_con_nombre()

    def vuelve_a_listar(self):
        pon_guion(*LISTADO)
        self.app.pulsa("push button", "Volver")
        self.lee("3 elementos")

    def deja_guardar(self):
        self.viva()
        self.app.pulsa("push button", "Guardar algo")
        self.vacia()

    def test_lo_que_falla_al_listar_y_el_motor_que_cambia(self):
        MOTOR.unlink()
        self.explora()
        self.falla_con("No encuentro el motor.")
        pon_motor("esto no es un programa\n")
        self.app.pulsa("push button", "Volver")
        self.falla_con("No pude arrancar el motor.")
        pon_actor()
        for guion, mensaje in ((("senal 9",), "No se puede leer este archivo."),
                               (("sale 3",), "No se puede leer este archivo."),
                               ((r"error aviso\nError: cabecera dañada\nError: otro\n", "sale 1"),
                                "cabecera dañada")):
            pon_guion(*guion)
            self.app.pulsa("push button", "Volver")
            self.falla_con(mensaje)
        self.vuelve_a_listar()
        MOTOR.unlink()
        self.abre_fila(self.fila("a.txt"))
        self.lee("No encuentro el motor.")
        self.recupera("Recuperar todo", self.casa)
        self.falla_con("No encuentro el motor.")

    def test_la_lista_llega_con_un_menu_abierto(self):
        self.explora(f"aguarda {YA}", *LISTADO)
        persona.teclas("alt+a")
        self.app.espera("menu item", "Salir")
        YA.touch()
        self.lee("3 elementos")
        persona.teclas("Escape")  # for the menu, which still has the keyboard
        persona.hasta(lambda: self.app.busca("menu item", "Salir") is None, "el menú cerrado")
        self.app.espera_foco(self.buscador())

    def test_lista_lo_que_no_es_texto(self):
        self.explora(r"salida -0644          1 a\n\xff\xfe\x80\n", "sale 0")
        self.lee("0 elementos")
        self.assertEqual(self.filas(), [])
        self.assertFalse(self.app.activo(self.app.espera("push button", "Recuperar 0")))
        self.assertTrue(self.app.activo(self.app.espera("push button", "Recuperar todo")))
        self.todo_con_nombre()

    def test_un_millon_de_lineas_de_basura(self):
        pon_motor(CHARLATAN)
        self.explora()
        self.viva()
        self.app.lee(lambda t: t == "500000 elementos", "la cuenta", 60)
        self.viva()
        self.busca("algo", "500000 de 500000")
        self.deja_guardar()

    def test_se_cuelga_o_inunda_al_listar(self):
        for guion in ("espera 600000", "inunda 100000000"):
            with self.subTest(guion=guion):
                self.explora(guion, "espera 600000")
                self.lee("leyendo el archivo…")
                self.deja_guardar()
                self.cierra()

    def test_recuperar_y_salir_a_la_mitad(self):
        self.lista()
        self.pincha(self.fila("a.txt"))
        persona.teclas("ctrl+a")
        self.recuperables("Recuperar 3")
        pon_guion("espera 900", "sale 0")
        self.recupera("Recuperar 3", self.casa)
        for i in range(1, 4):
            self.lee(f"recuperando {i} de 3…")
        self.recuperado()
        self.app.pulsa("push button", "Volver")
        self.recuperables("Recuperar 3")
        pon_guion(r"error warning: error\nError: no cabe\n", "sale 1")
        self.recupera("Recuperar todo", self.casa)
        self.falla_con("no cabe")
        self.vuelve_a_listar()
        self.pincha(self.fila("b.txt"))
        pon_guion("sale 1")
        self.recupera("Recuperar este", self.casa)
        self.falla_con("No se pudo recuperar «docs/b.txt».")
        pon_guion(*UNO)
        self.app.pulsa("push button", "Volver")
        self.lee("1 elementos")
        pon_guion("espera 600000")
        self.recupera("Recuperar todo", self.casa)
        self.lee("recuperando todo…")
        motores = persona.hasta(self.motores, "el motor en marcha")
        persona.teclas("ctrl+q")
        self.espera_panel("¿Salir sin terminar de recuperar?")
        persona.teclas("Escape")
        self.espera_sin_panel()
        self.assertEqual([motor.exists() for motor in motores], [True])
        persona.teclas("ctrl+q")
        self.app.pulsa("push button", "Salir")
        self.acabada(*self.app.acaba())
        self.assertEqual([motor.exists() for motor in motores], [False])

    def test_abrir_uno_a_la_vez_y_sus_fallos(self):
        self.lista()
        pon_guion(f"argumentos {APUNTADO}", f"aguarda {YA}", "sale 1")
        self.abre_fila(self.fila("a.txt"))
        persona.hasta(APUNTADO.exists, "la primera apertura en marcha")
        self.abre_fila(self.fila("b.txt"))
        YA.touch()
        mensaje = "No se pudo abrir «docs/a.txt»."
        self.lee(mensaje)
        ordenes = APUNTADO.read_bytes()
        self.assertEqual(ordenes.count(b"extract\0"), 1)
        self.assertIn(b"--file\0docs/a.txt\0", ordenes)
        self.assertTrue(self.naranja(self.app.espera("label", mensaje)))
        self.busca("b.txt", "1 de 3")
        pon_guion(r"error Error: clave mala\n", "sale 1")
        self.abre_fila(self.fila("b.txt"))
        self.lee("clave mala")

    def naranja(self, nodo):
        """Whether there is orange where the control is."""
        caja = nodo.get_extents(persona.Atspi.CoordType.SCREEN)
        zona = f"{caja.width}x{caja.height}+{caja.x}+{caja.y}"
        puntos = subprocess.run(["import", "-window", "root", "-crop", zona, "-depth", "8",
                                 "rgb:-"], capture_output=True, check=True).stdout
        return any(r > 160 and 60 < g < 190 and b < 90
                   for r, g, b in zip(puntos[::3], puntos[1::3], puntos[2::3]))


if __name__ == "__main__":
    unittest.main()
