"""Other programs on the session bus: listeners, and services that answer as a
test wants."""

import os
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402


class Bus:
    """A connection of its own, served by a thread until `cierra`."""

    def __init__(self):
        self._contexto = GLib.MainContext.new()
        self._bucle = GLib.MainLoop.new(self._contexto, False)
        lista = threading.Event()
        self._hilo = threading.Thread(target=self._sirve, args=(lista,), daemon=True)
        self._hilo.start()
        lista.wait()

    def _sirve(self, lista):
        self._contexto.push_thread_default()
        self.bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
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

    def oye(self, interfaz, senal):
        """A list that fills with the arguments of the signal."""
        oidas = []
        self._alli(lambda: self.bus.signal_subscribe(
            None, interfaz, senal, None, None, 0,
            lambda *dicho: oidas.append(dicho[5].unpack())))
        self.llama("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId")
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
        self.llama("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName", "(su)",
                   nombre, 4)

    def emite(self, objeto, interfaz, senal, argumentos):
        self.bus.emit_signal(None, objeto, interfaz, senal, argumentos)

    def cierra(self):
        self.bus.close_sync(None)
        self._bucle.quit()
        self._hilo.join()
