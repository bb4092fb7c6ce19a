"""The entries in the context menus of the file managers: there, and what is
selected arrives whole."""

import contextlib
import importlib.machinery
import os
import subprocess
import unittest
from unittest import mock

from caso import Caso, persona
from gestor import COMPRIMIR, PREFIJO, Gestor, GestorDeTeclado, Grabador

NOMBRES = ["dos palabras.txt", "la 'una' y la \"otra\".txt", "mañana.txt", "-o.txt",
           "dos\nlíneas.txt", "$HOME %f %U `id` & ;.txt"]


class Gestores(Caso):
    @classmethod
    def setUpClass(cls):
        cls.grabador = Grabador()

    def setUp(self):
        super().setUp()
        self.grabador.toma()
        self.carpeta = self.casa / "cosas"
        self.carpeta.mkdir()

    def con_de_todo(self):
        for nombre in NOMBRES:
            (self.carpeta / nombre).write_text("hola\n")
        (self.carpeta / "una carpeta").mkdir()

    def con_un_archivo(self):
        archivo = self.carpeta / "Fotos del viaje.OKZ"
        archivo.write_bytes(b"nada")  # what is empty is taken for text

    def abre_gestor(self, clase, programa, **opciones):
        self.app = clase(programa, self.carpeta, self.grabador, **opciones)
        self.addCleanup(self._remata, self.app.proceso)

    def pide(self, servicio, rotulo):
        """Until all that is in the folder arrives."""
        esperado = ["--servicio", servicio, *sorted(map(str, self.carpeta.iterdir()))]
        ultima = []

        def todo():
            try:
                ultima[:] = self.app.pide(rotulo)
            except persona.NoVisto as fallo:
                ultima[:] = [str(fallo)]
                persona.teclas("Escape", "Escape")
            return ultima[:2] + sorted(ultima[2:]) == esperado

        try:
            persona.hasta(todo, f"«{rotulo}» con todo")
        except persona.NoVisto as fallo:
            self.fail(f"{fallo}; lo último que llegó: {ultima!a}")

    def test_thunar(self):
        self.con_de_todo()
        self.abre_gestor(Gestor, "thunar")
        self.pide("comprimir", COMPRIMIR)

    def test_nautilus(self):
        """The extension by the library that Nautilus speaks to it with. Its
        window would do, but takes half a minute over a folder now and then."""
        self.con_de_todo()
        rutas = [str(ruta) for ruta in self.carpeta.iterdir()]
        extension = importlib.machinery.SourceFileLoader(
            "orcalin", str(PREFIJO / "share/nautilus-python/extensions/orcalin.py")).load_module()

        class Info(extension.GObject.GObject, extension.Nautilus.FileInfo):
            def do_get_location(self):
                return self.sitio

        def orden(sitios):
            infos = [Info() for _ in sitios]
            for info, sitio in zip(infos, sitios):
                info.sitio = sitio
            return extension.OrcalinMenu().get_file_items(infos)

        sitios = [extension.Gio.File.new_for_path(ruta) for ruta in rutas]
        comprimir, = orden(sitios)
        self.assertEqual(comprimir.get_property("label"), COMPRIMIR)
        with mock.patch.dict(os.environ, PATH=self.grabador.entorno["PATH"]):
            comprimir.emit("activate")
        self.assertEqual(persona.hasta(self.grabador.toma, "la llamada"),
                         ["--servicio", "comprimir", *rutas])
        remoto = extension.Gio.File.new_for_uri("sftp://otra/parte")
        self.assertEqual(orden([*sitios, remoto]), [])

    def test_pcmanfm(self):
        self.con_de_todo()
        self.abre_gestor(GestorDeTeclado, "pcmanfm-qt")
        self.pide("comprimir", COMPRIMIR)

    def test_abrir_desde_pcmanfm(self):
        self.con_un_archivo()
        self.abre_gestor(GestorDeTeclado, "pcmanfm-qt", desde_abajo=(3, 4))
        self.pide("abrir", "Abrir con Orcalin")

    def test_thunar_abre_con_la_aplicacion_del_tipo(self):
        self.con_un_archivo()
        self.abre_gestor(Gestor, "thunar")

        def ofrecido():
            self.app.abre_menu()
            with contextlib.suppress(persona.NoVisto):
                return persona.hasta(lambda: self.app.orden(
                    lambda nombre: "Orcalin" in nombre and "Open With" in nombre), "", 3)
            persona.teclas("Escape", "Escape")
            return None
        persona.hasta(ofrecido, "la orden de abrir")

    def test_lo_que_pide_el_complemento_de_thunar(self):
        tap = PREFIJO / "libexec/thunar-archive-plugin/es.orcalin.Orcalin.tap"
        rutas = [str(self.carpeta / nombre) for nombre in NOMBRES]
        for accion, servicio in (("create", "comprimir"), ("extract-here", "abrir"),
                                 ("extract-to", "abrir")):
            subprocess.run([tap, accion, self.carpeta, *rutas], env=self.grabador.entorno,
                           check=True)
            self.assertEqual(self.grabador.toma(), ["--servicio", servicio, *rutas])
        malo = subprocess.run([tap, "otra", self.carpeta, *rutas], env=self.grabador.entorno,
                              stderr=subprocess.PIPE, check=False)
        self.assertNotEqual(malo.returncode, 0)
        self.assertIn("otra", malo.stderr.decode())
        self.assertIsNone(self.grabador.toma())


if __name__ == "__main__":
    unittest.main()
