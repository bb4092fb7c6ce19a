"""The entries in the context menus of the file managers: there, and what is
selected arrives whole."""

import importlib.machinery
import os
import subprocess
from unittest import mock

from caso import ARBOL, SESION, Caso, persona
from gestor import COMPRIMIR, Gestor, GestorDeTeclado, Grabador, insiste

NOMBRES = ["dos palabras.txt", "la 'una' y la \"otra\".txt", "mañana.txt", "-o.txt",
           "dos\nlíneas.txt", "$HOME %f %U `id` & ;.txt"]


class Gestores(Caso):
    @classmethod
    def setUpClass(cls):
        cls.grabador = Grabador(SESION, ARBOL)

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
        # What is empty is taken for text.
        (self.carpeta / "Fotos del viaje.OKZ").write_bytes(b"nada")

    def abre_gestor(self, clase, programa, **opciones):
        self.gestor = clase(programa, self.carpeta, self.grabador, **opciones)
        self.addCleanup(self.remata, self.gestor.proceso)

    def pide(self, servicio, rotulo):
        """Until all that is in the folder arrives."""
        esperado = ["--servicio", servicio, *sorted(map(str, self.carpeta.iterdir()))]

        def todo():
            dicho = self.gestor.pide(rotulo)
            return dicho[:2] + sorted(dicho[2:]) == esperado or dicho
        insiste(todo, f"«{rotulo}» con todo")

    def test_thunar(self):
        self.con_de_todo()
        self.abre_gestor(Gestor, "thunar")
        self.pide("comprimir", COMPRIMIR)

    def test_thunar_abre_con_la_aplicacion_del_tipo(self):
        self.con_un_archivo()
        self.abre_gestor(Gestor, "thunar")

        def ofrecido():
            self.gestor.abre_menu()
            return persona.hasta(lambda: self.gestor.orden(
                lambda nombre: "Orcalin" in nombre and "Open With" in nombre), "", 3) is not None
        insiste(ofrecido, "la orden de abrir")

    def test_pcmanfm(self):
        self.con_de_todo()
        self.abre_gestor(GestorDeTeclado, "pcmanfm-qt")
        self.pide("comprimir", COMPRIMIR)

    def test_pcmanfm_abre(self):
        self.con_un_archivo()
        self.abre_gestor(GestorDeTeclado, "pcmanfm-qt", desde_abajo=(3, 4))
        self.pide("abrir", "Abrir con Orcalin")

    def test_nautilus(self):
        """The extension by the library that Nautilus speaks to it with. Its
        window would do, but takes half a minute over a folder now and then."""
        self.con_de_todo()
        extension = importlib.machinery.SourceFileLoader("orcalin", str(
            self.grabador.prefijo / "share/nautilus-python/extensions/orcalin.py")).load_module()

        class Info(extension.GObject.GObject, extension.Nautilus.FileInfo):
            def do_get_location(self):
                return self.sitio

        def orden(sitios):
            infos = [Info() for _ in sitios]
            for info, sitio in zip(infos, sitios):
                info.sitio = sitio
            return extension.OrcalinMenu().get_file_items(infos)

        rutas = [str(ruta) for ruta in self.carpeta.iterdir()]
        sitios = [extension.Gio.File.new_for_path(ruta) for ruta in rutas]
        comprimir, = orden(sitios)
        self.assertEqual(comprimir.get_property("label"), COMPRIMIR)
        with mock.patch.dict(os.environ, PATH=self.grabador.entorno["PATH"]):
            comprimir.emit("activate")
        self.assertEqual(persona.hasta(self.grabador.toma, "la llamada"),
                         ["--servicio", "comprimir", *rutas])
        remoto = extension.Gio.File.new_for_uri("sftp://otra/parte")
        self.assertEqual(orden([*sitios, remoto]), [])

    def test_lo_que_pide_el_complemento_de_thunar(self):
        tap = self.grabador.prefijo / "libexec/thunar-archive-plugin/es.orcalin.Orcalin.tap"
        rutas = [str(self.carpeta / nombre) for nombre in NOMBRES]
        for accion, servicio in (("create", "comprimir"), ("extract-here", "abrir"),
                                 ("extract-to", "abrir"), ("otra", None)):
            dicho = subprocess.run([tap, accion, self.carpeta, *rutas], check=False,
                                   env=self.grabador.entorno, stderr=subprocess.PIPE)
            self.assertEqual((dicho.returncode == 0, self.grabador.toma()),
                             (True, ["--servicio", servicio, *rutas]) if servicio else (False, None))
        self.assertIn("otra", dicho.stderr.decode())
