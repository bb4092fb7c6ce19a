"""The installed desktop files, type, metainfo and icons, by the desktop's own
tools and without a desktop."""

import configparser
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

APLICACION = "es.orcalin.Orcalin"


class Datos(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        carpeta = tempfile.TemporaryDirectory(prefix="orcalin-datos-")
        cls.addClassCleanup(carpeta.cleanup)
        cls.casa = Path(carpeta.name)
        cls.prefijo = cls.casa / "instalado"
        cls.datos = cls.prefijo / "share"
        # Nothing of whoever runs this is read or written.
        cls.entorno = dict(
            os.environ, HOME=str(cls.casa), XDG_DATA_HOME=str(cls.casa / "data"),
            XDG_CONFIG_HOME=str(cls.casa / "config"), XDG_CACHE_HOME=str(cls.casa / "cache"),
            XDG_DATA_DIRS=f"{cls.datos}:/usr/local/share:/usr/share",
            PATH=f"{cls.prefijo}/bin:{os.environ['PATH']}", GIO_USE_VFS="local")
        cls.dice("cmake", "--install", os.environ["ORCALIN_ARBOL"], "--prefix", cls.prefijo)
        cls.dice("update-mime-database", cls.datos / "mime")
        cls.dice("update-desktop-database", cls.datos / "applications")

    @classmethod
    def dice(cls, *orden):
        hecho = subprocess.run(orden, env=cls.entorno, capture_output=True, text=True, check=False)
        if hecho.returncode:
            raise AssertionError(f"{orden}: {hecho.stdout}{hecho.stderr}")
        return hecho.stdout

    def test_las_herramientas_los_dan_por_buenos(self):
        entradas = [*self.datos.glob("applications/*.desktop"), *self.datos.glob("Thunar/*/*")]
        self.assertEqual(len(entradas), 3)
        self.assertEqual(self.dice("desktop-file-validate", *entradas), "")
        metadatos = self.datos / f"metainfo/{APLICACION}.metainfo.xml"
        self.dice("appstreamcli", "validate", "--no-net", metadatos)
        dibujos = [*self.datos.rglob("*.svg")]
        self.assertEqual(len(dibujos), 3)
        self.dice("xmllint", "--noout", metadatos, *dibujos, *self.datos.glob("mime/packages/*"))
        self.dice("dash", "-n", *self.prefijo.rglob("*.tap"))
        for modulo in self.datos.rglob("*-python/extensions/*.py"):
            compile(modulo.read_text(), modulo, "exec")

    def test_cada_orden_de_menu_llama_a_lo_que_hay(self):
        """Every menu entry calls a service that there is, under its own name."""
        ordenes = [*self.datos.glob("kio/*/*"), *self.datos.glob("nemo/*/*"),
                   *self.datos.glob("file-manager/*/*"), *self.datos.glob("Thunar/*/*")]
        self.assertEqual(len(ordenes), 6)
        for fichero in ordenes:
            lector = configparser.ConfigParser(interpolation=None, strict=True)
            lector.optionxform = str
            lector.read(fichero)
            claves = {k: v for grupo in lector.sections() for k, v in lector[grupo].items()}
            rotulo, _, resto = claves["Name"].partition(" ")
            self.assertEqual(resto, "con Orcalin", fichero)
            self.assertEqual(claves["Exec"], f"orcalin-app --servicio {rotulo.lower()} %F", fichero)
            icono = claves.get("Icon") or claves["Icon-Name"]
            self.assertTrue([*self.datos.rglob(f"apps/{icono}.svg")], fichero)

    def tipo(self, nombre, contenido):
        fichero = self.casa / nombre
        fichero.write_bytes(contenido)
        dicho = self.dice("gio", "info", "-a", "standard::content-type", fichero)
        return dicho.rpartition("content-type:")[2].strip()

    def test_el_tipo_va_por_el_nombre_y_no_quita_nada_a_nadie(self):
        motor = self.prefijo / "libexec/orcalin/orcalin"
        (self.casa / "hola.txt").write_text("hola\n")
        self.dice(motor, "compress", self.casa / "hola.txt", "-o", self.casa / "hecho.okz")
        archivo = (self.casa / "hecho.okz").read_bytes()
        xz = b"\xfd7zXZ\x00" + bytes(20)
        for nombre, contenido, tipo in (
                ("a.okz", archivo, "x-okz"), ("A.OKZ", archivo, "x-okz"), ("max.okz", xz, "x-okz"),
                ("llano.zst", archivo, "zstd"), ("sin_extension", archivo, "zstd"),
                ("llano.xz", xz, "x-xz"), ("okz", archivo, "zstd")):
            with self.subTest(nombre):
                self.assertEqual(self.tipo(nombre, contenido), f"application/{tipo}")

    def test_la_aplicacion_del_tipo(self):
        dicho = self.dice("gio", "mime", "application/x-okz")
        self.assertIn(f"{APLICACION}.desktop", dicho.splitlines()[0])
        self.assertNotIn(APLICACION, self.dice("gio", "mime", "application/zstd"))


if __name__ == "__main__":
    unittest.main()
