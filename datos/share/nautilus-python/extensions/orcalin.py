"""Orcalin's entry in the context menu of Nautilus, which by itself offers to
open an archive with its application."""

import gi

gi.require_version("Nautilus", "4.0")
from gi.repository import Gio, GLib, GObject, Nautilus  # noqa: E402

try:
    gi.require_version("Gdk", "4.0")
    from gi.repository import Gdk  # noqa: E402
except ValueError:  # Nautilus itself does without its Python description
    Gdk = None


def _testigo():
    """What lets the application's window come to the front of this one."""
    if Gdk is None:
        return None
    aplicacion = Gio.DesktopAppInfo.new("es.orcalin.Orcalin.desktop")
    pantalla = Gdk.Display.get_default()
    if aplicacion is None or pantalla is None:
        return None
    return pantalla.get_app_launch_context().get_startup_notify_id(aplicacion, [])


def _comprime(_orden, rutas):
    lanzador = Gio.SubprocessLauncher()
    testigo = _testigo()
    if testigo:
        lanzador.setenv("DESKTOP_STARTUP_ID", testigo, True)
        lanzador.setenv("XDG_ACTIVATION_TOKEN", testigo, True)
    try:
        lanzador.spawnv(["orcalin-app", "--servicio", "comprimir", *rutas])
    except GLib.Error as error:
        print(f"Orcalin: {error.message}")


class OrcalinMenu(GObject.GObject, Nautilus.MenuProvider):
    def get_file_items(self, archivos):
        rutas = [archivo.get_location().get_path() for archivo in archivos]
        if not rutas or not all(rutas):  # one of them is not on this machine
            return []
        orden = Nautilus.MenuItem(name="Orcalin::comprimir", label="Comprimir con Orcalin",
                                  tip="Guarda lo seleccionado en un solo archivo")
        orden.connect("activate", _comprime, rutas)
        return [orden]

    def get_background_items(self, _carpeta):
        return []
