"""Saving: what comes back of it, and that no engine, however it behaves, can
hang the window or outlive it."""

import os
import time
from pathlib import Path

from caso import SESION, Caso, persona
from huellas import RAROS, diferencias, siembra
from instalado import YA, CasoInstalado, pon_guion

CLAVE = "la araña, ç 1º"
SIEMPRE = "espera 600000"
CUARTO = r"error \n10/40 ficheros (25.0%), 7 MiB\n"
MITAD = r"error \n20/40 ficheros (50.0%), 14 MiB\n"


class IdaYVuelta(Caso):
    def guarda_y_compara(self, originales, propuesto, cifrado):
        """Through the window, back with the engine, and the same by name, content,
        mode, time and link."""
        archivo = self.casa / f"{len(os.listdir(self.casa))}.okz"
        self.suelta(*originales, por_el_borde=cifrado)
        self.guarda_en(archivo, propuesto)
        self.app.espera("push button", "Guardar otra cosa", 60)
        self.assertEqual(list(SESION.tmp.glob("okz-*")), [])
        sacado = os.fsencode(archivo.with_suffix(".sacado"))
        self.manda_al_motor(["extract", archivo, "-o", sacado], CLAVE if cifrado else None)
        nombres = [os.path.basename(original) for original in originales]
        self.assertEqual(sorted(os.listdir(sacado)), sorted(nombres))
        for original, nombre in zip(originales, nombres):
            self.assertEqual(diferencias(original, sacado + b"/" + nombre), [])
        self.app.pulsa("push button", "Guardar otra cosa")

    def test_lo_que_se_guarda_vuelve_igual(self):
        raiz = os.fsencode(self.casa) + b"/\xc3\xa1rbol raro"
        siembra(raiz)
        (self.casa / "suelto.okz").touch()  # alone it would be opened
        varios = (*RAROS, b"carpetas", b"enlace roto", b"solo lectura", b"carpeta vac\xc3\xada",
                  b"../suelto.okz")
        self.abre()
        for cifrado in (False, True):
            if cifrado:
                self.cifra(CLAVE)
            for originales, propuesto in (
                    ([raiz], "árbol raro.okz"),
                    ([raiz + b"/" + nombre for nombre in varios], "Archivo.okz"),
                    ([raiz + b"/no es UTF-8 \xe1\xff"], "no es UTF-8 \ufffd\ufffd.okz")):
                self.guarda_y_compara(originales, propuesto, cifrado)


class Guionizado(CasoInstalado):
    """The engine does as a script says."""

    def setUp(self):
        super().setUp()
        self.origen = self.casa / "carta.txt"
        self.origen.write_bytes(bytes(1000))
        self.guardados = 0
        self.abre_instalada()
        self.suelta(self.origen)

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
        self.app.pulsa("push button", "Volver")
        self.lee("carta.txt")

    def acaba_bien(self):
        self.lee("ahorras 667 bytes · 66% menos")

    def test_un_motor_que_se_porta_mal(self):
        self.app.pulsa("check box", "Comprimir al máximo")
        self.cifra("ocho letras")
        self.guarda(r"error age: deriving key\n", SIEMPRE)
        self.espera_barra("preparando el cifrado…")
        self.cancela()
        self.a_un_cuarto("inunda 60000000", "espera 300", CUARTO, SIEMPRE)
        self.viva()
        self.cancela()
        self.guarda(r"error \x00\xff\xfe\x80\x1b[2J\x00\n", "espera 100", "error 10/40 fiche",
                    "espera 100", r"error ros (25.0%), 7 MiB\n", "espera 100", MITAD, SIEMPRE)
        self.espera_barra("50 %, 20 de 40 archivos")
        self.cancela()
        self.a_un_cuarto(CUARTO, "espera 200", "cierra", SIEMPRE)
        self.assertLess(self.procesador_durante(1), 0.5, "espera dando vueltas")
        self.cancela()
        self.guarda("senal 9")
        self.falla_con("No se pudo guardar.")
        self.assertTrue(self.marcada("Comprimir al máximo"))  # all is kept for another try
        self.a_un_cuarto("ignora", CUARTO, f"aguarda {YA}", "sale 1")
        self.app.pulsa("push button", "Cancelar")  # it does not listen
        self.app.pulsa("check box", "Comprimir al máximo")
        persona.hasta(lambda: not self.marcada("Comprimir al máximo"), "la casilla libre")
        self.viva()
        YA.touch()
        self.falla_con("No se pudo guardar.")
        self.guarda("escribe-destino 333", "sale 0")
        self.acaba_bien()

    def procesador_durante(self, segundos):
        """Seconds of processor that the application takes in that time."""
        def gastado():
            dato = Path(f"/proc/{self.app.proceso.pid}/stat").read_text(encoding="utf-8")
            campos = dato.rpartition(")")[2].split()
            return (int(campos[11]) + int(campos[12])) / 100
        antes = gastado()
        time.sleep(segundos)
        return gastado() - antes

    def test_no_hace_caso_y_la_aplicacion_se_va(self):
        self.cifra("otras letras")
        self.a_un_cuarto("ignora", CUARTO, SIEMPRE)
        motor, = self.motores()
        self.cierra()
        self.assertFalse(motor.exists())

    def test_acaba_mientras_se_pregunta_si_salir(self):
        self.a_un_cuarto(CUARTO, f"aguarda {YA}", "escribe-destino 333")
        persona.teclas("alt+F4")  # the window manager's
        self.espera_panel("¿Salir sin terminar de guardar?")
        YA.touch()
        self.espera_sin_panel()
        self.acaba_bien()
        persona.teclas("alt+F4")  # there is nothing left to ask about
        self.acabada(*self.app.acaba())
