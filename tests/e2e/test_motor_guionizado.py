"""An installed application whose engine does as a script says: what is shown of
a job, and that nothing an engine does can hang the window."""

import time
import unittest

from caso import SESION, persona
from instalado import MOTOR, CasoInstalado, pon_actor, pon_guion, pon_motor

SIEMPRE = "espera 600000"
CUARTO = r"error \n10/40 ficheros (25.0%), 7 MiB\n"
MITAD = r"error \n20/40 ficheros (50.0%), 14 MiB\n"
BYTES = 1000
YA = SESION.carpeta / "ya"
ACABA = (CUARTO, f"aguarda {YA}", "escribe-destino 333", "sale 0")


class Guionizado(CasoInstalado):
    def setUp(self):
        super().setUp()
        YA.unlink(missing_ok=True)
        self.origen = self.casa / "carta.txt"
        self.origen.write_bytes(bytes(BYTES))
        self.guardados = 0
        self.abre_instalada()
        self.elige()

    # What a test is made of.

    def elige(self):
        self.suelta(self.origen)
        self.lee("carta.txt")

    def guarda(self, *guion):
        pon_guion(*guion)
        self.guardados += 1
        self.guarda_en(self.casa / f"{self.guardados}.okz", "carta.txt.okz")
        self.espera_sin_panel()

    def espera_barra(self, texto):
        """Whatever it says of the time that is left."""
        def dice():
            barra = self.app.busca("progress bar", "carta.txt")
            return barra and barra.get_description().partition(" · ~")[0] == texto
        persona.hasta(dice, f"la barra con «{texto}»")

    def a_un_cuarto(self, *guion):
        self.guarda(*guion)
        self.espera_barra("25 %, 10 de 40 archivos")

    def cancela(self):
        self.app.pulsa("push button", "Cancelar")
        self.falla_con("No se pudo guardar.")

    def falla_con(self, mensaje):
        self.app.espera("push button", "Volver")
        self.lee(mensaje)
        self.todo_con_nombre()
        self.app.pulsa("push button", "Volver")
        self.lee("carta.txt")

    def acaba_bien(self):
        self.app.lee(lambda t: t == "ahorras 667 bytes · 66% menos", "el ahorro")

    def siguiente_funciona(self):
        self.guarda("escribe-destino 333", "sale 0")
        self.acaba_bien()
        self.todo_con_nombre()
        self.app.pulsa("push button", "Guardar otra cosa")
        self.vacia()

    def test_lo_que_se_ve_del_trabajo_y_de_sus_fallos(self):
        self.app.pulsa("check box", "Comprimir al máximo")
        self.cifra("ocho letras")
        self.guarda(SIEMPRE)
        self.espera_barra("preparando…")
        self.cancela()
        self.guarda(r"error age: deriving key\n", SIEMPRE)
        self.espera_barra("preparando el cifrado…")
        self.cancela()
        self.a_un_cuarto(CUARTO, SIEMPRE)
        self.lee("10 de 40 archivos")
        self.todo_con_nombre()
        self.cancela()
        self.guarda("espera 2200", MITAD, SIEMPRE)
        self.espera_barra("50 %, 20 de 40 archivos")
        self.lee("20 de 40 archivos · ~unos segundos")
        self.cancela()
        for guion, mensaje in (
                ([CUARTO, r"error aviso: casi\nError: no cabe en «el disco»\n", "sale 1"],
                 "no cabe en «el disco»"),
                (["senal 9"], "No se pudo guardar."),
                (["sale 3"], "No se pudo guardar.")):
            self.guarda(*guion)
            self.falla_con(mensaje)
            for opcion in ("Comprimir al máximo", "Cifrar"):  # all is kept for another try
                self.assertTrue(self.marcada(opcion), opcion)
        self.siguiente_funciona()
        self.assertFalse(self.app.activo(self.app.espera("push button", "Guardar")))

    def test_un_motor_que_se_porta_mal(self):
        self.a_un_cuarto("inunda 60000000", "espera 300", CUARTO, SIEMPRE)
        self.viva()
        self.cancela()
        self.guarda(r"error \x00\xff\xfe\x80\x1b[2J\x00\n", "espera 100", "error 10/40 fiche",
                    "espera 100", r"error ros (25.0%), 7 MiB\n", "espera 100", MITAD, SIEMPRE)
        self.espera_barra("50 %, 20 de 40 archivos")
        self.viva()
        self.cancela()
        self.a_un_cuarto(CUARTO, "espera 200", "cierra", SIEMPRE)
        self.viva()
        self.assertLess(self.procesador_durante(1), 0.5, "espera dando vueltas")
        self.cancela()
        self.a_un_cuarto("ignora", CUARTO, f"aguarda {YA}", "sale 1")
        self.app.pulsa("push button", "Cancelar")  # it does not listen
        self.app.pulsa("check box", "Comprimir al máximo")
        persona.hasta(lambda: self.marcada("Comprimir al máximo"), "la casilla marcada")
        self.viva()
        YA.touch()
        self.falla_con("No se pudo guardar.")
        self.siguiente_funciona()

    def procesador_durante(self, segundos):
        """Seconds of processor that the application takes in that time."""
        def gastado():
            with open(f"/proc/{self.app.proceso.pid}/stat", encoding="utf-8") as dato:
                campos = dato.read().rpartition(")")[2].split()
            return (int(campos[11]) + int(campos[12])) / 100
        antes = gastado()
        time.sleep(segundos)
        return gastado() - antes

    def test_no_hace_caso_y_la_aplicacion_se_va(self):
        self.cifra("otras letras")
        self.a_un_cuarto("ignora", CUARTO, SIEMPRE)
        motores = self.motores()
        self.cierra()
        self.assertEqual([motor.exists() for motor in motores], [False])

    def test_acaba_mientras_se_pregunta_si_salir(self):
        self.a_un_cuarto(*ACABA)
        persona.teclas("alt+F4")  # the window manager's
        self.espera_panel("¿Salir sin terminar de guardar?")
        YA.touch()
        self.espera_sin_panel()
        self.acaba_bien()
        persona.teclas("alt+F4")  # there is nothing left to ask about
        self.acabada(*self.app.acaba())

    def test_el_motor_cambia_y_se_abre_otra_cosa_mientras_guarda(self):
        self.a_un_cuarto(*ACABA)
        MOTOR.unlink()  # the one that runs is not the one that is there
        YA.touch()
        self.acaba_bien()
        self.app.pulsa("push button", "Guardar otra cosa")
        self.elige()
        for motor, mensaje in (
                (None, "No encuentro el motor «orcalin». Debería estar dentro de la app."),
                ("esto no es un programa\n",
                 "No pude arrancar el motor: no es un programa para este ordenador."),
                ("#!/bin/sh\necho 'Error: el nuevo no sabe' >&2; exit 1\n", "el nuevo no sabe")):
            if motor:
                pon_motor(motor)
            self.guarda()
            self.falla_con(mensaje)
        pon_actor()

        YA.unlink()
        self.cifra("ocho letras")
        self.a_un_cuarto(*ACABA)
        motores = self.motores()
        pon_guion(r"salida -0644          1 a.txt\n", "sale 0")
        otro = self.casa / "otro.okz"
        otro.touch()
        self.entrega(otro)
        self.lee("1 elementos")
        self.assertEqual([motor.exists() for motor in motores], [True])
        self.app.pulsa("push button", "Guardar algo")
        self.vacia()
        YA.touch()
        persona.hasta(lambda: not motores[0].exists(), "el final de lo que se guardaba")
        self.assertEqual((self.casa / f"{self.guardados}.okz").stat().st_size, 333)
        self.elige()
        self.siguiente_funciona()


if __name__ == "__main__":
    unittest.main()
