"""A desktop of its own for the end-to-end tests: X server, window manager,
session bus and accessibility bus, in a folder that goes with them."""

import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

OSCURO = """[General]
ColorScheme=Oscuro
[Colors:Window]
BackgroundNormal=32,35,38
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=20,20,20
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
"""


class Sesion:
    """Starts the servers; `cierra` ends them and removes the folder. The
    environment of this process is that of the session from then on."""

    def __init__(self, ancho=1400, alto=1100, lienzo=False):
        """`lienzo`: the server keeps its picture in a file, self.lienzo."""
        self.carpeta = Path(tempfile.mkdtemp(prefix="orcalin-e2e-"))
        self.casa = self.carpeta / "casa"
        self.tmp = self.carpeta / "tmp"
        self.prefijo = self.carpeta / "instalado"  # what is installed here, the session finds
        for carpeta in (self.casa, self.tmp, self.carpeta / "run"):
            carpeta.mkdir(mode=0o700)
        self._hijos = []
        self.lienzo = self.carpeta / "Xvfb_screen0"
        self._prepara_entorno()
        os.environ["DISPLAY"] = ":" + self._servidor_x(
            ancho, alto, ["-fbdir", str(self.carpeta)] if lienzo else [])
        # With the letters of the language on it: what has to be typed by a key
        # made for it is lost now and then.
        subprocess.run(["setxkbmap", "es"], check=True)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._bus()
        self._lanza(["openbox", "--sm-disable"])
        self._espera_al_gestor()

    def _prepara_entorno(self):
        # The temporary folder of the application must be seen apart from that
        # of everything else here.
        for sobra in ("WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "SESSION_MANAGER"):
            os.environ.pop(sobra, None)
        os.environ.update(
            HOME=str(self.casa),
            XDG_CONFIG_HOME=str(self.casa / ".config"),
            XDG_DATA_HOME=str(self.casa / ".local/share"),
            XDG_DATA_DIRS=f"{self.prefijo}/share:/usr/local/share:/usr/share",
            XDG_CACHE_HOME=str(self.casa / ".cache"),
            XDG_RUNTIME_DIR=str(self.carpeta / "run"),
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            LC_ALL="C.UTF-8",
        )

    def _lanza(self, orden, **opciones):
        hijo = subprocess.Popen(orden, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                start_new_session=True, **opciones)
        self._hijos.append(hijo)
        return hijo

    def _servidor_x(self, ancho, alto, opciones):
        leer, escribir = os.pipe()
        # Else the server forgets the keyboard when its last client leaves.
        self._lanza(["Xvfb", "-displayfd", str(escribir), "-nolisten", "tcp", "-noreset",
                     "-screen", "0", f"{ancho}x{alto}x24", *opciones], pass_fds=[escribir])
        os.close(escribir)
        with os.fdopen(leer) as numero:
            return numero.readline().strip()

    @staticmethod
    def _espera_al_gestor():
        # A window that is there before the manager is never placed.
        limite = time.monotonic() + 20
        while subprocess.run(["xdotool", "get_desktop"], capture_output=True,
                             check=False).returncode:
            if time.monotonic() > limite:
                raise RuntimeError("the window manager does not come up")
            time.sleep(0.05)

    def _bus(self):
        bus = self._lanza(["dbus-daemon", "--session", "--nofork", "--print-address"],
                          stdout=subprocess.PIPE, text=True)
        return bus.stdout.readline().strip()

    def entorno(self, oscuro=False, escala=1, local="C"):
        """The environment for an application in this session."""
        entorno = dict(os.environ, TMPDIR=str(self.tmp), QT_SCALE_FACTOR=str(escala),
                       **self._en(f"{local}.UTF-8"))
        config = self.carpeta / ("oscuro" if oscuro else "claro")
        config.mkdir(exist_ok=True)
        entorno["XDG_CONFIG_HOME"] = str(config)
        if oscuro:
            # The one palette that Qt takes from the desktop without a plugin.
            (config / "kdeglobals").write_text(OSCURO)
            entorno.update(XDG_CURRENT_DESKTOP="KDE", KDE_SESSION_VERSION="5")
        return entorno

    def _en(self, local):
        """A locale need not be installed: its name is what Qt goes by, and the C
        library is content with another's tables under that name."""
        locales = self.carpeta / "locales"
        locales.mkdir(exist_ok=True)
        if not (locales / local).exists():
            (locales / local).symlink_to("/usr/lib/locale/C.utf8")
        return {"LOCPATH": str(locales), "LC_ALL": local}

    def vacia(self):
        """Leaves the home and the temporary folder as they were at first."""
        for carpeta in (self.casa, self.tmp):
            shutil.rmtree(carpeta)
            carpeta.mkdir(mode=0o700)

    def cierra(self):
        for hijo in reversed(self._hijos):
            if hijo.poll() is None:
                os.killpg(hijo.pid, signal.SIGTERM)
        for hijo in self._hijos:
            try:
                hijo.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(hijo.pid, signal.SIGKILL)
                hijo.wait()
            if hijo.stdout:
                hijo.stdout.close()
        shutil.rmtree(self.carpeta, ignore_errors=True)
