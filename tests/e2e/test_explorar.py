"""The archive browser: with the engine that the application brings, and with
one that does as a script says."""

import os
import unicodedata

from caso import SESION, Caso, persona
from huellas import RAROS, diferencias, siembra
from instalado import YA, CasoInstalado, pon_guion, pon_motor
from visor import Visor

CLAVE = "la araña, ç 1º"
# The listing escapes what does not fit into a line of text, or would be lost at
# its ends; and names of other alphabets, and one that looks escaped already.
DIFICILES = (
    b"salto\nde l\xc3\xadnea.txt",
    b"barra\\invertida.txt",
    b"parece\\x41.txt",
    b"  blancos delante.txt",
    b"no es UTF-8 \xe1\xff.txt",
    b"-guion delante.txt",
    "夏の旅 旅行笔记.txt".encode(),
    unicodedata.normalize("NFD", "acción.txt").encode(),
)
# What to search for to see it, and its name.
ELEGIDAS = (
    ("raros/carpetas", b"carpetas"),
    ("otro nombre", b"otro nombre de privado"),
    ("enlace roto", b"enlace roto"),
    ("carpeta vac", "carpeta vacía".encode()),
    ("n descompuesta", RAROS[6]),
    ("raros/programa", b"programa"),
)
LISTADO = (r"salida d0755          0 docs\n-0644       1234 docs/a.txt\n"
           r"-0644         10 docs/b.txt\n", "sale 0")
APUNTADO = SESION.carpeta / "apuntado"
CHARLATAN = """#!/bin/sh
yes basura | head -n 500000
yes -- '- basura que parece algo' | head -n 500000
"""


def escribe_textos(carpeta, nombres):
    os.makedirs(carpeta)
    for nombre in nombres:
        with open(carpeta + b"/" + nombre, "wb") as texto:
            texto.write(b"Esto es lo que dice " + repr(nombre).encode() + b"\n")


class Explorar(Caso):
    def abre_con_visor(self, *ficheros):
        entorno = SESION.entorno()
        self.visor = Visor(entorno)
        self.abre(*ficheros, entorno=entorno)

    def copia(self):
        """The path of what the browser has just opened."""
        return persona.hasta(self.visor.toma, "el archivo en su aplicación")[0]

    def saca(self, boton, nombre):
        """To a new folder of that name, and its path."""
        destino = self.casa / nombre
        destino.mkdir()
        self.recupera(boton, destino)
        self.recuperado()
        self.app.pulsa("push button", "Volver")
        return os.fsencode(destino)

    def test_lo_que_se_mira_y_lo_que_se_saca_es_lo_guardado(self):
        raiz = os.fsencode(self.casa) + b"/raros"
        siembra(raiz)
        escribe_textos(raiz + b"/textos", DIFICILES)
        elementos = 1 + sum(len(c) + len(f) for _, c, f in os.walk(raiz))
        archivo = self.casa / "archivo.okz"
        self.comprime([self.casa / "raros"], archivo, CLAVE)
        self.abre_con_visor()
        self.suelta(archivo)
        self.manda_clave(CLAVE)
        self.lee(f"{elementos} elementos")

        for busca, nombre in ELEGIDAS:  # each is hidden by the search for the next
            self.escribe_en_busca(busca)
            self.pincha(self.fila(nombre.decode(), "raros"), "ctrl")
        self.recuperables("Recuperar 6")
        destino = self.saca("Recuperar 6", "elegidas") + b"/raros/"
        # The folder with all that is below it; the second name with the contents.
        for _, nombre in ELEGIDAS:
            self.assertEqual(diferencias(raiz + b"/" + nombre, destino + nombre), [], nombre)
        self.assertEqual(len(os.listdir(destino)), 6)
        self.recuperables("Recuperar 6")  # the list is as it was
        self.assertTrue(self.elegida(self.fila("programa")))

        self.busca("con espacios", f"3 de {elementos}")
        self.raton(self.fila("con espacios", "raros/carpetas"), "click", "3")
        self.app.espera("menu item", "Recuperar…")
        self.assertIsNone(self.app.busca("menu item", "Abrir"), "ofrece abrir una carpeta")
        persona.teclas("Escape")
        self.raton(self.fila("con espacios", "raros"), "click", "3")
        self.app.espera("menu item", "Abrir")
        self.raton(self.app.espera("menu item", "Recuperar…"), "click", "1")
        (self.casa / "una").mkdir()
        self.dice_donde(self.casa / "una", "¿Dónde lo dejo?")
        self.recuperado()
        self.assertEqual(os.listdir(self.casa / "una/raros"), ["con espacios"])
        self.app.pulsa("push button", "Volver")

        self.busca("raros/textos/", f"{len(DIFICILES)} de {elementos}")
        nombres = set()
        for _ in DIFICILES:
            persona.teclas("Down", "Return")
            copia = self.copia()
            nombres.add(os.path.basename(copia))
            with open(copia, "rb") as una, \
                    open(raiz + b"/textos/" + os.path.basename(copia), "rb") as otra:
                self.assertEqual(una.read(), otra.read())
        self.assertEqual(nombres, set(DIFICILES))

        self.assertEqual(diferencias(raiz, self.saca("Recuperar todo", "todo") + b"/raros"), [])

    def estan_elegidas(self, *nombres):
        def cuales():
            return {n for n in ("cosas", *(f"{x}.txt" for x in "abcde"))
                    if self.elegida(self.fila(n))}
        persona.hasta(lambda: cuales() == set(nombres), f"elegidas {nombres}")

    def test_elegir_y_buscar_con_el_teclado(self):
        cosas = self.casa / "cosas"
        escribe_textos(os.fsencode(cosas), [b"%c.txt" % letra for letra in b"abcde"])
        archivo = self.casa / "archivo.okz"
        self.comprime([cosas], archivo)
        self.abre_con_visor(archivo)
        self.lee("6 elementos")
        self.pincha(self.fila("a.txt"))
        persona.teclas("shift+Down", "shift+Down")
        self.estan_elegidas("a.txt", "b.txt", "c.txt")
        persona.teclas("ctrl+Up", "ctrl+space")
        self.estan_elegidas("a.txt", "c.txt")
        persona.teclas("ctrl+a")
        self.recuperables("Recuperar 6")
        persona.teclas("End")
        self.estan_elegidas("e.txt")

        persona.teclea("c.t")  # in the list it is for the search
        self.lee("1 de 6")
        self.assertEqual(self.buscado(), "c.t")
        persona.teclas("Down")
        self.recuperables("Recuperar este")
        persona.teclas("Return")
        self.assertTrue(self.copia().endswith(b"/cosas/c.txt"))
        persona.teclas("ctrl+f")
        self.app.espera_foco(self.buscador())
        persona.teclea("b.t")  # over what was there
        persona.hasta(lambda: self.buscado() == "b.t", "lo buscado sustituido")
        persona.teclas("Escape", "Down", "Return")  # a folder narrows the search to it
        self.lee("5 de 6")
        self.assertEqual(self.buscado(), "cosas/")
        persona.teclas("Down", "ctrl+a")  # what is to be seen
        self.recuperables("Recuperar 5")


class Guionizado(CasoInstalado):
    def setUp(self):
        super().setUp()
        APUNTADO.unlink(missing_ok=True)
        self.archivo = self.casa / "docs.okz"
        self.archivo.write_text("lo que haya dentro no lo mira nadie")

    def explora(self, *guion):
        pon_guion(*guion)
        self.abre_instalada(self.archivo)

    def vuelve_a_guardar(self):
        self.viva()
        self.app.pulsa("push button", "Guardar algo")
        self.vacia()

    def test_la_lista_llega_con_un_menu_abierto(self):
        self.explora(f"aguarda {YA}", *LISTADO)
        persona.teclas("alt+a")
        self.app.espera("menu item", "Salir")
        YA.touch()
        self.lee("3 elementos")
        persona.teclas("Escape")  # for the menu, which still has the keyboard
        persona.hasta(lambda: self.app.busca("menu item", "Salir") is None, "el menú cerrado")
        self.app.espera_foco(self.buscador())

    def test_un_millon_de_lineas_de_basura(self):
        pon_motor(CHARLATAN)
        self.explora()
        self.viva()
        self.app.lee(lambda t: t == "500000 elementos", "la cuenta", 60)
        self.busca("algo", "500000 de 500000")
        for _ in range(10):  # narrow and wide again, faster than the list follows
            persona.teclas("x", "BackSpace")
        self.lee("500000 de 500000")
        self.vuelve_a_guardar()

    def test_se_cuelga_o_inunda_al_listar(self):
        for guion in ("espera 600000", "inunda 100000000"):
            with self.subTest(guion=guion):
                self.explora(guion, "espera 600000")
                self.lee("leyendo el archivo…")
                self.viva()
                pon_guion(*LISTADO)
                self.entrega(self.archivo.rename(self.casa / "otro.okz"))
                self.lee("3 elementos")
                self.vuelve_a_guardar()
                self.cierra()
                self.archivo.touch()

    def test_lo_que_falla_al_recuperar_se_lee_otra_vez(self):
        self.explora(*LISTADO)
        self.lee("3 elementos")
        pon_guion(r"error warning: error\nError: no cabe\n", "sale 1")
        self.recupera("Recuperar todo", self.casa)
        self.app.espera("push button", "Volver")
        self.lee("no cabe")
        self.accesible()
        pon_guion(r"salida -0644          1 nuevo.txt\n", "sale 0")
        self.app.pulsa("push button", "Volver")
        self.lee("1 elementos")

    def test_abrir_uno_a_la_vez_y_sus_fallos(self):
        self.explora(*LISTADO)
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
        zona = persona.caja(self.app.espera("label", mensaje))
        self.assertTrue(any(r > 160 and 60 < g < 190 and b < 90
                            for r, g, b in persona.colores(*zona)), "no es naranja")
