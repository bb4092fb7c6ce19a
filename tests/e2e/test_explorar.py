"""The archive browser with the engine that the application brings."""

import contextlib
import os
import subprocess
import unicodedata
import unittest

from caso import SESION, Caso, persona
from huellas import RAROS, diferencias, siembra
from pasosexplorador import PasosExplorador
from visor import Visor

CLAVE = "la araña, ç 1º"
TODO = "Recuperar todo"
NO_ESTA = "no se puede abrir el archivo: no existe"
MUCHOS = 200
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


@contextlib.contextmanager
def montado(carpeta, opciones):
    """A small disk of its own at the folder."""
    carpeta.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", opciones, "none", carpeta], check=True)
    try:
        yield carpeta
    finally:
        subprocess.run(["umount", carpeta], check=True)


class Explorar(PasosExplorador, Caso):
    def setUp(self):
        super().setUp()
        self.archivo = self.casa / "archivo.okz"

    def tearDown(self):
        self.cierra()
        self.assertEqual(self.restos_del_motor(), [])
        self.assertIn(os.listdir(SESION.tmp), ([], ["orcalin-ver"]))

    def restos_del_motor(self):
        return list(SESION.tmp.glob("okz-*"))

    def lanza(self, origenes, clave=None):
        self.comprime(origenes, self.archivo, clave)
        entorno = SESION.entorno()
        self.visor = Visor(entorno)
        self.abre(self.archivo, entorno=entorno)

    def raros(self):
        """A tree of all that is odd: (its path, how many entries it makes)."""
        raiz = os.fsencode(self.casa) + b"/raros"
        siembra(raiz)
        self.textos(raiz + b"/textos", DIFICILES)
        return raiz, 1 + sum(len(c) + len(f) for _, c, f in os.walk(raiz))

    @staticmethod
    def textos(carpeta, nombres):
        os.makedirs(carpeta)
        for nombre in nombres:
            with open(carpeta + b"/" + nombre, "wb") as texto:
                texto.write(b"Esto es lo que dice " + repr(nombre).encode() + b"\n")

    def sencillos(self):
        """A folder with five texts: six rows."""
        carpeta = self.casa / "cosas"
        self.textos(os.fsencode(carpeta), [b"%c.txt" % letra for letra in b"abcde"])
        return carpeta

    def saca(self, boton, nombre, espera=60):
        """To a new folder of that name, and its path."""
        destino = self.casa / nombre
        destino.mkdir()
        self.recupera(boton, destino)
        self.recuperado(espera)
        self.app.pulsa("push button", "Volver")
        return destino

    def copia(self):
        """The path of what the browser has just opened."""
        ruta, modo = persona.hasta(self.visor.toma, "el archivo en su aplicación")
        self.assertEqual(modo, 0o444)
        self.assertTrue(ruta.startswith(os.fsencode(SESION.tmp / "orcalin-ver/")), ruta)
        return ruta

    def contenido(self, ruta):
        with open(ruta, "rb") as fichero:
            return fichero.read()


class Cifrado(Explorar):
    def pide(self, con):
        """The prompt, with the text that was in it."""
        self.lee("Este archivo está cifrado")
        campo = self.app.espera("password text", "Contraseña")
        self.app.espera_foco(campo)
        self.assertEqual(campo.get_text_iface().get_character_count(), len(con))
        self.assertEqual(self.restos_del_motor(), [])

    def test_de_la_clave_equivocada_a_todo_fuera(self):
        raiz, elementos = self.raros()
        self.textos(raiz + b"/muchos", [b"%03d.txt" % i for i in range(MUCHOS)])
        elementos += 1 + MUCHOS
        self.lanza([raiz], CLAVE)
        self.pide("")
        persona.teclas("Return")
        self.pide("")
        for mala in ("otra vez", CLAVE + " "):
            self.manda_clave(mala)
            with self.motor_retenido():
                self.lee("leyendo el archivo…")
            self.pide(mala)
        persona.teclas("ctrl+a")
        persona.teclea(CLAVE)
        self.app.pulsa("push button", "Abrir")
        self.lee(f"{elementos} elementos")

        self.busca("muchos/", f"{MUCHOS} de {elementos}")
        self.abre_fila(self.fila("000.txt"))
        self.assertEqual(self.contenido(self.copia()), self.contenido(raiz + b"/muchos/000.txt"))
        self.pincha(self.fila("001.txt"))
        persona.teclas("ctrl+a")
        # Long only where the kernel may keep no keys: in many a container.
        destino = self.saca(f"Recuperar {MUCHOS}", "elegidos", 300)
        self.assertEqual(os.listdir(destino / "raros"), ["muchos"])
        muchos = os.fsencode(destino / "raros/muchos")
        self.assertEqual(len(os.listdir(muchos)), MUCHOS)
        for nombre in os.listdir(muchos):
            self.assertEqual(diferencias(raiz + b"/muchos/" + nombre, muchos + b"/" + nombre), [])
        self.app.pulsa("push button", "Borrar la búsqueda")
        destino = self.saca(TODO, "sacado")
        self.assertEqual(os.listdir(destino), ["raros"])
        self.assertEqual(diferencias(raiz, destino / "raros"), [])
        self.lee(f"{elementos} elementos")


class Recuperar(Explorar):
    def test_lo_elegido_su_menu_y_un_archivo_que_desaparece(self):
        raiz, elementos = self.raros()
        self.lanza([raiz])
        self.lee(f"{elementos} elementos")
        self.app.pulsa("push button", TODO)
        self.app.espera("dialog", "¿Dónde dejo todo el contenido?")
        persona.teclas("Escape")
        self.espera_sin_panel()

        elegidas = (b"carpetas", b"otro nombre de privado", b"enlace roto",
                    "carpeta vacía".encode(), RAROS[6], b"programa")
        for nombre in elegidas:  # each is hidden by the search for the next
            self.escribe_en_busca(f"raros/{nombre.decode()}")
            self.pincha(self.fila(nombre.decode(), "raros"), "ctrl")
        self.recuperables("Recuperar 6")
        destino = os.fsencode(self.saca("Recuperar 6", "sacado")) + b"/raros/"
        # The folder with all that is below it; the second name with the contents.
        for nombre in elegidas:
            self.assertEqual(diferencias(raiz + b"/" + nombre, destino + nombre), [], nombre)
        self.assertEqual(len(os.listdir(destino)), 6)
        self.recuperables("Recuperar 6")  # the list is as it was
        self.assertEqual(self.buscado(), "raros/programa")
        self.assertTrue(self.elegida(self.fila("programa")))

        self.busca("con espacios", f"3 de {elementos}")
        self.raton(self.fila("con espacios", "raros"), "click", "3")
        self.app.espera("menu item", "Abrir")
        self.raton(self.app.espera("menu item", "Recuperar…"), "click", "1")
        (self.casa / "uno").mkdir()
        self.dice_donde(self.casa / "uno", "¿Dónde lo dejo?")
        self.recuperado()
        self.assertEqual(os.listdir(self.casa / "uno/raros"), ["con espacios"])
        self.app.pulsa("push button", "Volver")
        self.raton(self.fila("con espacios", "raros/carpetas"), "click", "3")
        self.app.espera("menu item", "Recuperar…")
        self.assertIsNone(self.app.busca("menu item", "Abrir"), "ofrece abrir una carpeta")
        persona.teclas("Escape")

        guardado = self.casa / "otro sitio"
        self.archivo.rename(guardado)
        self.abre_fila(self.fila("con espacios", "raros"))
        self.lee(NO_ESTA)
        self.app.pulsa("push button", TODO)
        self.dice_donde(self.casa / "uno", "¿Dónde dejo todo el contenido?")
        self.app.espera("push button", "Volver")
        self.lee(NO_ESTA)
        guardado.rename(self.archivo)
        self.app.pulsa("push button", "Volver")
        self.lee(f"3 de {elementos}")

    @unittest.skipUnless(os.geteuid() == 0, "only root makes disks")
    def test_destino_sin_permiso_o_sin_sitio(self):
        carpeta = self.sencillos()
        (carpeta / "e.txt").write_bytes(os.urandom(300_000))
        self.lanza([carpeta])
        for opciones, motivo in (("ro", "solo lectura"), ("size=64k", "espacio")):
            with self.subTest(disco=opciones), montado(self.casa / opciones, opciones) as disco:
                self.recupera(TODO, disco)
                self.app.espera("push button", "Volver")
                self.app.lee(lambda t: motivo in t, f"un fallo que diga «{motivo}»")
                self.todo_con_nombre()
                self.app.pulsa("push button", "Volver")
                self.lee("6 elementos")


class Lista(Explorar):
    def test_nombres_dificiles_y_la_carpeta_de_las_copias(self):
        carpeta = os.fsencode(self.casa / "textos")
        self.textos(carpeta, DIFICILES)
        self.lanza([carpeta])
        self.lee(f"{1 + len(DIFICILES)} elementos")
        nombres = set()
        persona.teclas("Down")  # from the search field to the folder's row
        for _ in DIFICILES:
            persona.teclas("Down", "Return")
            ruta = self.copia()
            nombres.add(os.path.basename(ruta))
            self.assertEqual(self.contenido(ruta),
                             self.contenido(carpeta + b"/" + os.path.basename(ruta)), ruta)
        self.assertEqual(nombres, set(DIFICILES))
        self.cierra()
        self.assertEqual(len(os.listdir(SESION.tmp / "orcalin-ver")), len(DIFICILES))
        self.abre(self.archivo)
        self.lee(f"{1 + len(DIFICILES)} elementos")
        self.assertEqual(os.listdir(SESION.tmp), [])

    def test_otro_archivo_mientras_se_busca_y_mientras_se_lista(self):
        carpeta = self.casa / "muchas"
        carpeta.mkdir()
        for n in range(300):
            (carpeta / f"n{n:03}.txt").touch()
        for forma in ("NFC", "NFD"):
            (carpeta / unicodedata.normalize(forma, f"Canción {forma}.mp3")).write_text("la\n")
        self.lanza([carpeta])
        self.lee("303 elementos")
        for forma in ("NFC", "NFD"):
            self.busca(unicodedata.normalize(forma, "CANción"), "2 de 303")
        for nada in ("cancion", "no está"):
            self.busca(nada, "0 de 303")
            self.assertEqual(self.filas(), [])
        self.app.pulsa("push button", "Borrar la búsqueda")
        self.lee("303 elementos")
        self.assertIsNone(self.app.busca("push button", "Borrar la búsqueda"))
        self.app.espera_foco(self.buscador())
        for _ in range(10):  # narrow and wide again, faster than the list follows
            persona.teclas(*"n299", *["BackSpace"] * 4)
        self.lee("303 elementos")

        otro = self.casa / "otro.okz"
        self.comprime([self.sencillos()], otro, CLAVE)
        self.abre_desde_fuera(otro)
        self.manda_clave(CLAVE)
        with self.motor_retenido():
            self.lee("leyendo el archivo…")
            self.abre_desde_fuera(self.archivo)
            self.lee("303 elementos")
        persona.hasta(lambda: not self.motores(), "el primer listado acabado")
        self.lee("303 elementos")
        self.archivo.write_bytes(b"")
        self.app.pulsa("push button", "Guardar algo")
        self.abre_desde_fuera(self.archivo)
        self.app.espera("push button", "Volver")

    def abre_desde_fuera(self, archivo):
        subprocess.run([self.arbol / "bin/orcalin-app", archivo], env=SESION.entorno(), check=True)


class Elegir(Explorar):
    def setUp(self):
        super().setUp()
        self.lanza([self.sencillos()])
        self.lee("6 elementos")

    def estan_elegidas(self, *nombres):
        def cuales():
            return {n for n in ("cosas", *(f"{x}.txt" for x in "abcde"))
                    if self.elegida(self.fila(n))}
        persona.hasta(lambda: cuales() == set(nombres), f"elegidas {nombres}")

    def test_con_raton_y_con_teclado(self):
        self.pincha(self.fila("b.txt"))
        self.estan_elegidas("b.txt")
        self.pincha(self.fila("d.txt"), "shift")
        self.estan_elegidas("b.txt", "c.txt", "d.txt")
        self.pincha(self.fila("c.txt"), "ctrl")
        self.estan_elegidas("b.txt", "d.txt")
        self.pincha(self.fila("a.txt"))
        self.estan_elegidas("a.txt")
        persona.teclas("shift+Down", "shift+Down")
        self.estan_elegidas("a.txt", "b.txt", "c.txt")
        persona.teclas("ctrl+Up", "ctrl+space")
        self.estan_elegidas("a.txt", "c.txt")
        persona.teclas("ctrl+a")
        self.recuperables("Recuperar 6")
        persona.teclas("End")
        self.estan_elegidas("e.txt")
        self.busca(".txt", "5 de 6")
        self.pincha(self.fila("a.txt"))
        persona.teclas("ctrl+a")  # what is to be seen
        self.recuperables("Recuperar 5")
        self.app.pulsa("push button", "Borrar la búsqueda")
        self.estan_elegidas("a.txt", "b.txt", "c.txt", "d.txt", "e.txt")

    def test_el_teclado_va_y_viene_de_la_busqueda(self):
        self.app.espera_foco(self.buscador())
        persona.teclea("a.t")
        self.lee("1 de 6")
        persona.teclas("Escape")
        self.lee("6 elementos")
        self.pincha(self.fila("d.txt"))
        persona.teclea("c.t")
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
        self.todo_con_nombre()
        persona.teclas("Escape", "Down", "Return")  # a folder narrows the search to it
        self.lee("5 de 6")
        self.assertEqual(self.buscado(), "cosas/")


if __name__ == "__main__":
    unittest.main()
