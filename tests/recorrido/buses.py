"""Other programs on the session bus: listeners, and services that answer as a
test wants."""

import os
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402


class Bus:
    """A connection of its own, to the session's bus unless told, served by a
    thread until `cierra`."""

    def __init__(self, direccion=None):
        self._direccion = direccion or os.environ["DBUS_SESSION_BUS_ADDRESS"]
        self._contexto = GLib.MainContext.new()
        self._bucle = GLib.MainLoop.new(self._contexto, False)
        lista = threading.Event()
        self._hilo = threading.Thread(target=self._sirve, args=(lista,), daemon=True)
        self._hilo.start()
        lista.wait()

    def _sirve(self, lista):
        self._contexto.push_thread_default()
        self.bus = Gio.DBusConnection.new_for_address_sync(
            self._direccion, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        lista.set()
        self._bucle.run()

    def _alli(self, hacer):
        """Runs it on the thread, which is where what it sets up is served."""
        hecho = threading.Event()
        def corre(*_):
            hacer()
            hecho.set()
            return False
        fuente = GLib.idle_source_new()
        fuente.set_callback(corre)
        fuente.attach(self._contexto)
        hecho.wait()

    def llama(self, nombre, objeto, interfaz, metodo, firma="()", *argumentos):
        return self.bus.call_sync(nombre, objeto, interfaz, metodo,
                                  GLib.Variant(firma, argumentos), None, 0, 5000, None).unpack()

    def al_bus(self, metodo, firma="()", *argumentos):
        """A question to the bus itself."""
        return self.llama("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          metodo, firma, *argumentos)

    def proceso_de(self, nombre):
        """The process that has the name, or none."""
        if not self.al_bus("NameHasOwner", "(s)", nombre)[0]:
            return None
        return self.al_bus("GetConnectionUnixProcessID", "(s)", nombre)[0]

    def oye(self, interfaz, senal):
        """A list that fills with the arguments of the signal."""
        oidas = []
        self._alli(lambda: self.bus.signal_subscribe(
            None, interfaz, senal, None, None, 0,
            lambda *dicho: oidas.append(dicho[5].unpack())))
        self.al_bus("GetId")
        return oidas

    def ofrece(self, nombre, objeto, xml, atiende):
        """Owns the name; `atiende(method, arguments)` gives the reply, or None
        for never any."""
        def llamada(_bus, _quien, _objeto, _interfaz, metodo, argumentos, invocacion):
            respuesta = atiende(metodo, argumentos.unpack())
            if respuesta is not None:
                invocacion.return_value(respuesta)
        interfaz = Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0]
        self._alli(lambda: self.bus.register_object(objeto, interfaz, llamada, None, None))
        self.al_bus("RequestName", "(su)", nombre, 4)

    def emite(self, objeto, interfaz, senal, argumentos):
        self.bus.emit_signal(None, objeto, interfaz, senal, argumentos)

    def cierra(self):
        self.bus.close_sync(None)
        self._bucle.quit()
        self._hilo.join()


class Avisos:
    """The notifications of a session in which dunst runs."""

    _SITIO = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
    _ORDENES = (*_SITIO, "org.dunstproject.cmd0")

    def __init__(self, bus):
        self._bus = bus

    def ala_vista(self):
        """How many can be seen."""
        return self._bus.llama(*self._SITIO, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                               self._ORDENES[2], "displayedLength")[0]

    def contesta(self):
        """What a person does who clicks on the first."""
        self._bus.llama(*self._ORDENES, "NotificationAction", "(u)", 0)

    def retira(self):
        self._bus.llama(*self._ORDENES, "NotificationCloseAll")

    def ultimo(self):
        """(application, title, plain text) of the last that is gone."""
        dicho = self._bus.llama(*self._ORDENES, "NotificationListHistory")[0][0]
        texto = dicho["body"].replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&")
        return dicho["appname"], dicho["summary"], texto


class Portal:
    """The settings portal of a desktop, as far as looks go."""

    _NOMBRE = "org.freedesktop.portal.Desktop"
    _OBJETO = "/org/freedesktop/portal/desktop"
    _AJUSTES = "org.freedesktop.portal.Settings"
    _METODO = """<method name="{}"><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="v" direction="out"/></method>"""

    def __init__(self, bus, metodos, contesta=True, esquema=0, acento=(-1, -1, -1)):
        """`metodos`: those of "Read" and "ReadOne" that this portal has."""
        self._bus = bus
        self._valores = {"color-scheme": GLib.Variant("u", esquema),
                         "accent-color": GLib.Variant("(ddd)", acento)}

        def atiende(metodo, argumentos):
            if not contesta:
                return None
            valor = GLib.Variant("v", self._valores[argumentos[1]])
            if metodo == "Read":  # once more than one would think
                valor = GLib.Variant("v", valor)
            return GLib.Variant.new_tuple(valor)
        bus.ofrece(self._NOMBRE, self._OBJETO, f"<node><interface name='{self._AJUSTES}'>"
                   f"{''.join(map(self._METODO.format, metodos))}</interface></node>", atiende)

    def _cambia(self, clave, valor):
        self._valores[clave] = valor
        self._bus.emite(self._OBJETO, self._AJUSTES, "SettingChanged",
                        GLib.Variant("(ssv)", ("org.freedesktop.appearance", clave, valor)))

    def esquema(self, cual):
        """0: none preferred, 1: dark, 2: light."""
        self._cambia("color-scheme", GLib.Variant("u", cual))

    def acento(self, *partes):
        """Red, green, blue from 0 to 1; none where one is beyond."""
        self._cambia("accent-color", GLib.Variant("(ddd)", partes))
