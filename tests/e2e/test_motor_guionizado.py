"""An installed application whose engine does as a script says: what is shown of
a job, and that nothing an engine does can hang the window."""

import time
import unittest

from caso import SESION, persona
from instalado import MOTOR, CasoInstalado, pon_actor, pon_guion

SIEMPRE = "espera 600000"
CUARTO = r"error \n10/40 ficheros (25.0%), 7 MiB\n"
MITAD = r"error \n20/40 ficheros (50.0%), 14 MiB\n"
BYTES = 1000


class Guionizado(CasoInstalado):
    def setUp(self):
        super().setUp()
        self.origen = self.casa / "carta.txt"
        self.origen.write_bytes(bytes(BYTES))
        self.guardados = 0
        self.abre_instalada()
        self.suelta(self.origen)
        self.lee("carta.txt")

    # What a test is made of.

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

    def cancela(self):
        self.app.pulsa("push button", "Cancelar")
        self.falla_con("No se pudo guardar.")

    def falla_con(self, mensaje):
        self.app.espera("push button", "Volver")
        self.lee(mensaje)
        self.todo_con_nombre()
        self.app.pulsa("push button", "Volver")
        self.lee("carta.txt")

    def siguiente_funciona(self):
        self.guarda("escribe-destino 333", "sale 0")
        self.app.lee(lambda t: t == "ahorras 667 bytes · 66% menos", "el ahorro")
        self.todo_con_nombre()
        self.app.pulsa("push button", "Guardar otra cosa")
        self.vacia()

    # What is shown of a job.

    def test_lo_que_se_ve_del_trabajo(self):
        self.guarda(SIEMPRE)
        self.espera_barra("preparando…")
        self.cancela()
        self.guarda(r"error age: deriving key\n", SIEMPRE)
        self.espera_barra("preparando el cifrado…")
        self.cancela()
        self.guarda(CUARTO, SIEMPRE)
        self.espera_barra("25 %, 10 de 40 archivos")
        self.lee("10 de 40 archivos")
        self.todo_con_nombre()
        self.cancela()
        self.guarda("espera 2200", MITAD, SIEMPRE)
        self.espera_barra("50 %, 20 de 40 archivos")
        self.lee("20 de 40 archivos · ~unos segundos")
        self.cancela()

    def test_los_fallos_con_sus_palabras(self):
        self.guarda(CUARTO, r"error aviso: casi\nError: no cabe en «el disco»\n", "sale 1")
        self.falla_con("no cabe en «el disco»")
        for guion in (["senal 9"], ["sale 3"]):
            with self.subTest(guion=guion):
                self.guarda(*guion)
                self.falla_con("No se pudo guardar.")

    def test_volver_lo_conserva_todo_y_otra_cosa_empieza_de_nuevo(self):
        self.app.pulsa("check box", "Comprimir al máximo")
        self.cifra("ocho letras")
        self.guarda("sale 1")
        self.falla_con("No se pudo guardar.")
        for opcion in ("Comprimir al máximo", "Cifrar"):
            self.assertTrue(self.marcada(opcion), opcion)
        self.assertTrue(self.app.activo(self.app.espera("push button", "Guardar")))
        self.siguiente_funciona()
        self.assertFalse(self.app.activo(self.app.espera("push button", "Guardar")))

    # An engine that behaves badly.

    def test_inunda(self):
        self.guarda("inunda 60000000", "espera 300", CUARTO, SIEMPRE)
        self.espera_barra("preparando…")
        self.viva()
        self.espera_barra("25 %, 10 de 40 archivos")
        self.cancela()
        self.siguiente_funciona()

    def test_dice_binario_y_parte_las_lineas(self):
        self.guarda(r"error \x00\xff\xfe\x80\x1b[2J\x00\n", "espera 100", "error 10/40 fiche",
                    "espera 100", r"error ros (25.0%), 7 MiB\n", "espera 100", MITAD, SIEMPRE)
        self.espera_barra("50 %, 20 de 40 archivos")
        self.viva()
        self.cancela()
        self.siguiente_funciona()

    def test_cierra_sus_tuberias_y_sigue(self):
        self.guarda(CUARTO, "espera 200", "cierra", SIEMPRE)
        self.espera_barra("25 %, 10 de 40 archivos")
        self.viva()
        self.assertLess(self.procesador_durante(1), 0.5, "espera dando vueltas")
        self.cancela()
        self.siguiente_funciona()

    def test_no_hace_caso_a_cancelar(self):
        self.guarda("ignora", CUARTO, "espera 4000", "sale 1")
        self.espera_barra("25 %, 10 de 40 archivos")
        self.app.pulsa("push button", "Cancelar")
        self.app.pulsa("check box", "Comprimir al máximo")
        persona.hasta(lambda: self.marcada("Comprimir al máximo"), "la casilla marcada")
        self.viva()
        self.falla_con("No se pudo guardar.")
        self.siguiente_funciona()

    def test_no_hace_caso_y_la_aplicacion_se_va(self):
        self.cifra("otras letras")
        self.guarda("ignora", CUARTO, SIEMPRE)
        self.espera_barra("25 %, 10 de 40 archivos")
        motores = self.motores()
        self.cierra()
        self.assertEqual([motor.exists() for motor in motores], [False])

    def test_acaba_mientras_se_pregunta_si_salir(self):
        ya = SESION.carpeta / "ya"
        self.guarda(CUARTO, f"aguarda {ya}", "escribe-destino 333", "sale 0")
        self.espera_barra("25 %, 10 de 40 archivos")
        persona.teclas("alt+F4")  # the window manager's
        self.espera_panel("¿Salir sin terminar de guardar?")
        ya.touch()
        self.espera_sin_panel()
        self.app.lee(lambda t: t == "ahorras 667 bytes · 66% menos", "el ahorro")
        ya.unlink()
        persona.teclas("alt+F4")  # there is nothing left to ask about
        self.acabada(*self.app.acaba())

    # No engine to speak of.

    def test_sin_motor(self):
        MOTOR.unlink()
        self.guarda()
        self.falla_con("No encuentro el motor «orcalin». Debería estar dentro de la app.")
        pon_actor()
        self.siguiente_funciona()

    def test_el_motor_no_es_un_programa(self):
        MOTOR.unlink()
        MOTOR.write_text("esto no es un programa\n")
        MOTOR.chmod(0o755)
        self.guarda()
        self.falla_con("No pude arrancar el motor: no es un programa para este ordenador.")
        pon_actor()
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


if __name__ == "__main__":
    unittest.main()
