"""Entries dragged out of the browser onto another program's window."""

import os
import shutil
from urllib.parse import unquote_to_bytes

from caso import ARBOL, SESION, persona
from huellas import diferencias
from instalado import CasoInstalado, pon_guion

CLAVE = "la araña, ç 1º"
NOMBRES = (b"a b%20c.txt", b"salto\nde l\xc3\xadnea", b"no es UTF-8 \xff.txt", b"barra\\x41.txt")
LISTADO = r"salida -0644         10 a.txt\n-0644 999999999999999 enorme\n"


class Arrastrar(CasoInstalado):
    def setUp(self):
        super().setUp()
        self.archivo = self.casa / "archivo.okz"
        self.destino = self.casa / "destino"
        self.destino.mkdir()
        self.receptor = persona.Receptor(f"{ARBOL}/tests/recorrido/receptor", self.destino)
        self.addCleanup(self.receptor.cierra)

    def lista(self, elementos):
        self.lee(f"{elementos} elementos")
        self.receptor.calla(0)

    def actuada(self, *guion):
        """The browser before an engine that does so when it takes out."""
        pon_guion(LISTADO)
        self.archivo.touch()
        self.abre_instalada(self.archivo)
        self.lista(2)
        pon_guion(*guion)

    def copias(self):
        return [*SESION.tmp.glob("orcalin-ver/*")]

    def sin_copias(self):
        persona.hasta(lambda: not self.copias(), "las copias borradas")

    # With a password each entry takes a second: the drop comes long before.
    def test_varias_y_una_carpeta_con_contrasena(self):
        carpeta = os.fsencode(self.casa / "cosas")
        os.mkdir(carpeta)
        for nombre in NOMBRES:
            with open(carpeta + b"/" + nombre, "wb") as fichero:
                fichero.write(nombre * 100)
        os.chmod(carpeta + b"/" + NOMBRES[0], 0o750)
        shutil.copytree(carpeta, carpeta + b"/dentro")
        self.comprime([carpeta], self.archivo, CLAVE)
        self.abre(self.archivo)
        self.manda_clave(CLAVE)
        self.lista(2 + 2 * len(NOMBRES))
        self.pincha(self.fila("a b%20c.txt", "cosas"))
        persona.teclas("ctrl+a")
        self.pincha(self.fila("cosas"), "ctrl")  # all but the folder of all
        self.recuperables(f"Recuperar {1 + 2 * len(NOMBRES)}")
        self.lleva(self.fila("a b%20c.txt", "cosas"), self.receptor)
        persona.suelta()
        dicho = self.receptor.espera("copiado")
        self.assertEqual(dicho[:2], ["encima", "ofrece 1"])  # to copy, nothing else
        self.assertEqual(len(dicho), 3 + len(NOMBRES) + 1, dicho)
        for uri in dicho[2:-1]:
            copia = unquote_to_bytes(uri.removeprefix("file://"))
            self.assertEqual(diferencias(carpeta + b"/" + os.path.basename(copia), copia), [])
        self.assertEqual({*os.listdir(os.fsencode(self.destino))}, {*NOMBRES, b"dentro"})
        self.assertTrue(self.receptor.calla())
        self.assertTrue(self.copias())  # whoever copies may still be at it

    def test_lo_que_se_suelta_espera_a_los_ficheros(self):
        self.actuada("espera 2500", "crea-entrada hola")
        self.lleva(self.fila("a.txt"), self.receptor)
        self.receptor.espera("encima", 2)  # nobody waits for the engine
        persona.suelta()
        self.assertTrue(self.receptor.calla(1))
        self.lista(2)  # the window is alive
        self.receptor.espera("copiado")
        self.assertEqual((self.destino / "a.txt").read_text(), "hola")

    def test_escape_acaba_con_todo(self):
        for guion in (["crea-entrada hola"], ["crea-entrada ho", "espera 60000"]):
            with self.subTest(guion=guion):
                self.actuada(*guion)
                self.lleva(self.fila("a.txt"), self.receptor)
                self.receptor.espera("encima")
                persona.hasta(self.copias, "la copia")
                persona.teclas("Escape")
                self.sin_copias()
                persona.suelta()
                self.assertTrue(self.receptor.calla())
                persona.hasta(lambda: not self.motores(), "el motor acabado")
                self.viva()
                self.pincha(self.fila("enorme"))  # the mouse is free again
                persona.hasta(lambda: self.elegida(self.fila("enorme")), "la fila elegida")
                self.cierra()

    def test_lo_que_falla_no_llega(self):
        self.actuada("espera 1000", "crea-entrada ho", r"error Error: está roto\n", "sale 1")
        self.lleva(self.fila("a.txt"), self.receptor)
        self.receptor.espera("encima")
        self.lee("está roto")
        persona.suelta()
        self.sin_copias()
        self.lleva(self.fila("enorme"), self.receptor)
        self.app.lee(lambda t: t.startswith("Para arrastrarlo hay que sacarlo del archivo y no "
                                            "cabe: ocupa 1.00 PB y quedan "), "la falta de sitio")
        persona.suelta()
        self.assertTrue(self.receptor.calla())
        self.assertEqual(os.listdir(self.destino), [])
