"""A default application of the desktop for a type of file, registered as any
other is. It writes down what it was asked to open."""

import os
from pathlib import Path

GUION = """#!/bin/sh
{{ stat -Lc %a -- "$1"; printf %s "$1"; }} > '{dicho}.nuevo'
mv '{dicho}.nuevo' '{dicho}'
"""
ENTRADA = """[Desktop Entry]
Type=Application
Name=Visor
Exec={guion} %f
MimeType={tipo};
"""
OTRO_ESCRITORIO = """#!/bin/sh
unset XDG_CURRENT_DESKTOP KDE_SESSION_VERSION
exec xdg-open "$1"
"""
# Some file managers bring a program of this name, which the desktop's opener
# then asks for a file's type, and which gives up on names that are not UTF-8.
TIPO = """#!/bin/sh
for fichero; do :; done
exec file --brief --dereference --mime-type -- "$fichero"
"""


class Visor:
    """Registers itself in an application's environment; once for each."""

    def __init__(self, entorno, tipo="text/plain"):
        datos = Path(entorno["XDG_DATA_HOME"])
        self._dicho = datos / "visor.dicho"
        self._programa(datos / "visor", GUION.format(dicho=self._dicho))
        self._escribe(datos / "applications/visor.desktop",
                      ENTRADA.format(guion=datos / "visor", tipo=tipo))
        self._escribe(Path(entorno["XDG_CONFIG_HOME"]) / "mimeapps.list",
                      f"[Default Applications]\n{tipo}=visor.desktop\n")
        # A desktop that is only named has no opener of its own.
        self._programa(datos / "bin/kde-open5", OTRO_ESCRITORIO)
        self._programa(datos / "bin/mimetype", TIPO)
        entorno["PATH"] = f"{datos}/bin:{os.environ['PATH']}"

    @staticmethod
    def _escribe(ruta, texto):
        ruta.parent.mkdir(parents=True, exist_ok=True)
        ruta.write_text(texto)

    def _programa(self, ruta, texto):
        self._escribe(ruta, texto)
        ruta.chmod(0o755)

    def toma(self):
        """(path as bytes, mode) of what it was given to open last, once."""
        if not self._dicho.exists():
            return None
        modo, _, ruta = self._dicho.read_bytes().partition(b"\n")
        self._dicho.unlink()
        return ruta, int(modo, 8)
