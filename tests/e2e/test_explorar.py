"""The archive browser with the engine that the application brings."""

import contextlib
import os
import shutil
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

    def explora(self, origenes, elementos, clave=None):
        self.comprime(origenes, self.archivo, clave)
        entorno = SESION.entorno()
        self.visor = Visor(entorno)
        self.abre(self.archivo, entorno=entorno)
        if clave is not None:
            self.manda_clave(clave)
        self.lee(f"{elementos} elementos")

    def raros(self):
        """A tree of all that is odd: (its path, how many entries it makes)."""
        raiz = os.fsencode(self.casa) + b"/raros"
        siembra(raiz)
        self.textos(raiz + b"/textos")
        return raiz, 1 + sum(len(c) + len(f) for _, c, f in os.walk(raiz))

    @staticmethod
    def textos(carpeta):
        os.makedirs(carpeta)
        for nombre in DIFICILES:
            with open(carpeta + b"/" + nombre, "wb") as texto:
                texto.write(b"Esto es lo que dice " + repr(nombre).encode() + b"\n")

    def sencillos(self):
        """A folder with five texts, seven rows with itself and one inside."""
        carpeta = self.casa / "cosas"
        carpeta.mkdir()
        for nombre in "abcde":
            (carpeta / f"{nombre}.txt").write_text(f"texto {nombre}\n")
        return carpeta

    def nueva(self, nombre):
        carpeta = self.casa / nombre
        carpeta.mkdir()
        return carpeta

    def vuelve(self, cuenta):
        self.app.pulsa("push button", "Volver")
        self.lee(cuenta)

    def estan_elegidas(self, *nombres):
        def cuales():
            return {n for n in ("cosas", *(f"{x}.txt" for x in "abcde"))
                    if self.elegida(self.fila(n))}
        persona.hasta(lambda: cuales() == set(nombres), f"elegidas {nombres}")


class Recuperar(Explorar):
    def test_todo(self):
        raiz, elementos = self.raros()
        self.explora([raiz], elementos, CLAVE)
        destino = self.nueva("sacado")
        self.recupera(TODO, destino)
        self.recuperado()
        self.assertEqual(os.listdir(destino), ["raros"])
        self.assertEqual(diferencias(raiz, destino / "raros"), [])
        privado = os.stat(destino / "raros/privado")
        self.assertTrue(os.path.samestat(privado, os.stat(destino / "raros/otro nombre de privado")))
        self.vuelve(f"{elementos} elementos")

    def test_lo_elegido_aunque_la_busqueda_lo_esconda(self):
        raiz, elementos = self.raros()
        self.explora([raiz], elementos)
        for ruta in ("carpetas", "otro nombre de privado", "enlace roto", "carpeta vacía",
                     RAROS[6].decode(), "programa"):
            self.escribe_en_busca(f"raros/{ruta}")
            self.pincha(self.fila(ruta, "raros"), "ctrl")
        self.recuperables("Recuperar 6")
        destino = self.nueva("sacado")
        self.recupera("Recuperar 6", destino)
        self.recuperado()
        # The folder with all that is below it; the second name with the contents.
        for nombre in (b"carpetas", b"otro nombre de privado", b"enlace roto", RAROS[6],
                       "carpeta vacía".encode(), b"programa"):
            self.assertEqual(
                diferencias(raiz + b"/" + nombre, os.fsencode(destino / "raros") + b"/" + nombre),
                [], nombre)
        self.assertEqual(len(os.listdir(destino / "raros")), 6)

    def test_la_lista_vuelve_como_estaba(self):
        self.explora([self.sencillos()], 6)
        self.pincha(self.fila("a.txt"))
        self.pincha(self.fila("c.txt"), "ctrl")
        self.busca("C.TXT", "1 de 6")
        self.recupera("Recuperar 2", self.nueva("sacado"))
        self.recuperado()
        self.assertEqual(sorted(os.listdir(self.casa / "sacado/cosas")), ["a.txt", "c.txt"])
        self.vuelve("1 de 6")
        self.assertEqual(self.buscado(), "C.TXT")
        self.recuperables("Recuperar 2")
        self.assertTrue(self.elegida(self.fila("c.txt")))

    def test_la_pregunta_que_se_cancela_no_cambia_nada(self):
        self.explora([self.sencillos()], 6)
        self.app.pulsa("push button", TODO)
        self.app.espera("dialog", "¿Dónde dejo todo el contenido?")
        persona.teclas("Escape")
        self.espera_sin_panel()
        self.lee("6 elementos")

    def test_el_menu_saca_su_fila_aunque_haya_otras_elegidas(self):
        self.explora([self.sencillos()], 6)
        self.pincha(self.fila("a.txt"))
        self.raton(self.fila("e.txt"), "click", "3")
        self.app.espera("menu item", "Abrir")
        self.raton(self.app.espera("menu item", "Recuperar…"), "click", "1")
        self.dice_donde(self.nueva("sacado"), "¿Dónde lo dejo?")
        self.recuperado()
        self.assertEqual(os.listdir(self.casa / "sacado/cosas"), ["e.txt"])
        self.vuelve("6 elementos")
        self.raton(self.fila("cosas"), "click", "3")
        self.app.espera("menu item", "Recuperar…")
        self.assertIsNone(self.app.busca("menu item", "Abrir"), "ofrece abrir una carpeta")
        persona.teclas("Escape")

    def test_el_archivo_desaparece(self):
        self.explora([self.sencillos()], 6)
        guardado = self.casa / "otro sitio"
        self.archivo.rename(guardado)
        self.recupera(TODO, self.nueva("sacado"))
        self.app.espera("push button", "Volver")
        self.lee(NO_ESTA)
        guardado.rename(self.archivo)
        self.vuelve("6 elementos")

    @unittest.skipUnless(os.geteuid() == 0, "only root makes disks")
    def test_destino_sin_permiso_o_sin_sitio(self):
        self.explora([self.grande()], 6)
        for opciones, motivo in (("ro", "solo lectura"), ("size=64k", "espacio")):
            with self.subTest(disco=opciones), montado(self.casa / opciones, opciones) as disco:
                self.recupera(TODO, disco)
                self.app.espera("push button", "Volver")
                self.app.lee(lambda t: motivo in t, f"un fallo que diga «{motivo}»")
                self.todo_con_nombre()
                self.vuelve("6 elementos")

    def grande(self):
        carpeta = self.sencillos()
        (carpeta / "e.txt").write_bytes(os.urandom(300_000))
        return carpeta


class Abrir(Explorar):
    def copia(self):
        ruta, modo = persona.hasta(self.visor.toma, "el archivo en su aplicación")
        self.assertEqual(modo, 0o444)
        self.assertTrue(ruta.startswith(os.fsencode(SESION.tmp / "orcalin-ver/")), ruta)
        return ruta

    def test_nombres_dificiles_y_la_carpeta_de_las_copias(self):
        carpeta = os.fsencode(self.casa / "textos")
        self.textos(carpeta)
        self.explora([carpeta], 1 + len(DIFICILES))
        nombres = set()
        persona.teclas("Down")  # from the search field to the folder's row
        for _ in DIFICILES:
            persona.teclas("Down", "Return")
            ruta = self.copia()
            nombres.add(os.path.basename(ruta))
            with open(ruta, "rb") as copia, \
                 open(carpeta + b"/" + os.path.basename(ruta), "rb") as original:
                self.assertEqual(copia.read(), original.read(), ruta)
        self.assertEqual(nombres, set(DIFICILES))
        self.cierra()
        self.assertEqual(len(os.listdir(SESION.tmp / "orcalin-ver")), len(DIFICILES))
        self.abre(self.archivo)
        self.lee(f"{1 + len(DIFICILES)} elementos")
        self.assertEqual(os.listdir(SESION.tmp), [])

    def test_con_contrasena(self):
        self.explora([self.sencillos()], 6, CLAVE)
        self.abre_fila(self.fila("d.txt"))
        with open(self.copia(), "rb") as copia:
            self.assertEqual(copia.read(), b"texto d\n")

    def test_un_archivo_que_ya_no_esta(self):
        self.explora([self.sencillos()], 6)
        self.archivo.unlink()
        self.abre_fila(self.fila("a.txt"))
        self.lee(NO_ESTA)
        self.busca("b.txt", "1 de 6")


class Clave(Explorar):
    def pide(self):
        self.lee("Este archivo está cifrado")
        self.app.espera_foco(self.app.espera("password text", "Contraseña"))

    def test_tres_veces_mal_y_luego_bien(self):
        self.comprime([self.sencillos()], self.archivo, CLAVE)
        self.abre(self.archivo)
        self.pide()
        for mala in ("una", "otra vez", CLAVE + " "):
            self.manda_clave(mala)
            with self.motor_retenido():
                self.lee("leyendo el archivo…")
            self.pide()
            campo = self.app.espera("password text", "Contraseña")
            self.assertEqual(campo.get_text_iface().get_character_count(), len(mala))
            self.assertEqual(self.restos_del_motor(), [])
        persona.teclas("ctrl+a")
        persona.teclea(CLAVE)
        self.app.pulsa("push button", "Abrir")
        self.lee("6 elementos")


class Lista(Explorar):
    def test_buscar_con_acentos_de_las_dos_maneras(self):
        carpeta = self.nueva("música")
        for forma in ("NFC", "NFD"):
            (carpeta / unicodedata.normalize(forma, f"Canción {forma}.mp3")).write_text("la\n")
        self.explora([carpeta], 3)
        for forma in ("NFC", "NFD"):
            self.busca(unicodedata.normalize(forma, "CANción"), "2 de 3")
        for nada in ("cancion", "no está"):
            self.busca(nada, "0 de 3")
            self.assertEqual(self.filas(), [])
        self.app.pulsa("push button", "Borrar la búsqueda")
        self.lee("3 elementos")
        self.assertIsNone(self.app.busca("push button", "Borrar la búsqueda"))

    def test_la_lista_se_estrecha_y_se_ensancha_deprisa(self):
        carpeta = self.nueva("muchas")
        for n in range(300):
            (carpeta / f"n{n:03}.txt").touch()
        self.explora([carpeta], 301)
        self.app.espera_foco(self.buscador())
        for _ in range(10):
            persona.teclas(*"n299", *["BackSpace"] * 4)
        self.lee("301 elementos")

    def test_elegir_con_raton_y_teclado(self):
        self.explora([self.sencillos()], 6)
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

    def test_todo_elegido_es_lo_que_se_ve(self):
        self.explora([self.sencillos()], 6)
        self.busca(".txt", "5 de 6")
        self.pincha(self.fila("a.txt"))
        persona.teclas("ctrl+a")
        self.recuperables("Recuperar 5")
        self.app.pulsa("push button", "Borrar la búsqueda")
        self.estan_elegidas("a.txt", "b.txt", "c.txt", "d.txt", "e.txt")

    def test_el_teclado_va_y_viene_de_la_busqueda(self):
        self.explora([self.sencillos()], 6)
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
        ruta, _ = persona.hasta(self.visor.toma, "el archivo en su aplicación")
        self.assertTrue(ruta.endswith(b"/cosas/c.txt"), ruta)
        persona.teclas("ctrl+f")
        self.app.espera_foco(self.buscador())
        persona.teclea("b.t")  # over what was there
        persona.hasta(lambda: self.buscado() == "b.t", "lo buscado sustituido")
        self.todo_con_nombre()

    def test_intro_en_una_carpeta_busca_dentro(self):
        self.explora([self.sencillos()], 6)
        persona.teclas("Down", "Return")
        self.lee("5 de 6")
        self.assertEqual(self.buscado(), "cosas/")

    def test_un_archivo_sin_nada(self):
        self.archivo.write_bytes(b"")
        self.abre(self.archivo)
        self.app.espera("push button", "Volver")


if __name__ == "__main__":
    unittest.main()
