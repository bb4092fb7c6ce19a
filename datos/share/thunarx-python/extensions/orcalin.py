"""Orcalin's entry in the context menu of Thunar, which by itself offers to open
an archive with its application."""

from gi.repository import Gdk, Gio, GLib, GObject, Thunarx


def _comprime(_orden, rutas):
    lanzador = Gio.SubprocessLauncher()
    aplicacion = Gio.DesktopAppInfo.new("es.orcalin.Orcalin.desktop")
    if aplicacion is not None:  # lets its window come to the front of this one
        contexto = Gdk.Display.get_default().get_app_launch_context()
        lanzador.setenv("DESKTOP_STARTUP_ID",
                        contexto.get_startup_notify_id(aplicacion, []) or "", True)
    try:
        lanzador.spawnv(["orcalin-app", "--servicio", "comprimir", *rutas])
    except GLib.Error as error:
        print(f"Orcalin: {error.message}")


def _ordenes(archivos):
    rutas = [archivo.get_location().get_path() for archivo in archivos]
    if not rutas or not all(rutas):  # one of them is not on this machine
        return []
    orden = Thunarx.MenuItem(name="Orcalin::comprimir", label="Comprimir con Orcalin",
                             tooltip="Guarda lo seleccionado en un solo archivo",
                             icon="es.orcalin.Orcalin")
    orden.connect("activate", _comprime, rutas)
    return [orden]


class OrcalinMenu(GObject.GObject, Thunarx.MenuProvider):
    def get_file_menu_items(self, _ventana, archivos):
        return _ordenes(archivos)

    def get_folder_menu_items(self, _ventana, _carpeta):
        return []
