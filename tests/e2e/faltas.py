"""What a person sees of each fault, what it leaves behind, how long the window
stood still, and whether the next job works: one row each. Not part of the
tests: takes a quarter of an hour. As root, because it mounts, in a namespace
that keeps the mounts to itself:

    ORCALIN_ARBOL=$PWD/build/release PYTHONPATH=recorrido \\
        unshare -m /usr/bin/python3 tests/e2e/faltas.py [Faltas.test_X …]
"""

import contextlib
import os
import random
import re
import shutil
import signal
import subprocess
import threading
import time
import unittest
import unittest.mock
from pathlib import Path

from buses import Bus, Gio, GLib
from caso import ARBOL, SESION, persona
from instalado import MOTOR, PREFIJO, CasoInstalado
from pasosexplorador import PasosExplorador
from visor import Visor

CLAVE = "la clave ñ"
ANTES = SESION.carpeta / "antes.sh"  # what the engine does before it is one
ENVOLTURA = f"""#!/bin/sh
[ -e '{ANTES}' ] && . '{ANTES}'
exec "${{0%/*}}/real/orcalin" "$@"
"""
QUIETA = 0.2  # seconds that nobody notices, on a machine that is not overloaded
TRABAJOS = ("guardar", "leer", "ver", "recuperar este", "recuperar todo")
A11Y = """<node><interface name='org.a11y.Bus'><method name='GetAddress'>
<arg type='s' direction='out'/></method></interface></node>"""


class Latido:
    """Asks the window's thread for a sign of life all the time; `peor` is the
    longest that it took, in seconds."""

    def __init__(self, pid):
        self._bus = self._conecta(self.accesibilidad())
        nombres = self._pide(self._bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                             "ListNames")[0]
        self._nombre = next(n for n in nombres if n.startswith(":") and self._pide(
            self._bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
            "GetConnectionUnixProcessID", GLib.Variant("(s)", (n,)))[0] == pid)
        self.peor = 0
        self._acaba = threading.Event()
        self._hilo = threading.Thread(target=self._late)

    @classmethod
    def accesibilidad(cls):
        sesion = cls._conecta(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        return cls._pide(sesion, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]

    @staticmethod
    def _conecta(direccion):
        return Gio.DBusConnection.new_for_address_sync(
            direccion, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    @staticmethod
    def _pide(bus, *que):
        argumentos = que[4] if len(que) > 4 else None
        return bus.call_sync(*que[:4], argumentos, None, 0, 30000, None).unpack()

    def _late(self):
        while not self._acaba.wait(0.01):
            antes = time.monotonic()
            with contextlib.suppress(GLib.Error):
                self._pide(self._bus, self._nombre, "/org/a11y/atspi/accessible/root",
                           "org.a11y.atspi.Accessible", "GetRole")
            self.peor = max(self.peor, time.monotonic() - antes)

    def __enter__(self):
        self._hilo.start()
        return self

    def __exit__(self, *_):
        self._acaba.set()
        self._hilo.join()


class ConAviso:
    """The person, who says so before pressing Return."""

    def __init__(self):
        self.al_confirmar = lambda: None

    def __getattr__(self, nombre):
        return getattr(persona, nombre)

    def teclas(self, *nombres):
        if "Return" in nombres:
            self.al_confirmar()
        persona.teclas(*nombres)


class Faltas(PasosExplorador, CasoInstalado):
    def setUp(self):
        super().setUp()
        real = MOTOR.parent / "real"
        real.mkdir(exist_ok=True)
        shutil.copy(f"{ARBOL}/libexec/orcalin/orcalin", real)
        MOTOR.unlink()
        MOTOR.write_text(ENVOLTURA)
        MOTOR.chmod(0o755)
        ANTES.unlink(missing_ok=True)
        self.persona = ConAviso()
        self.imagen = self.casa / "imagen"
        self.disco = self.casa / "disco"
        self.disco.mkdir()
        self.con_disco = False
        self.app = None
        self.que_ver = "texto.txt"
        self.cosas = self.disco / "cosas"
        self.archivo = self.disco / "archivo.okz"
        self.llena()
        self.donde = self.casa / "donde"
        self.donde.mkdir()
        self.vez = 0

    def llena(self):
        self.cosas.mkdir()
        azar = random.Random(6)
        (self.cosas / "texto.txt").write_text("texto\n")
        (self.cosas / "grande.txt").write_bytes(azar.randbytes(5_000_000))

    def tearDown(self):
        if self.app is not None:
            super().tearDown()

    # The five jobs: what they start from, how each is begun, and how it ends well.

    def arranca(self, **ademas):
        entorno = dict(SESION.entorno(), **ademas)
        self.visor = Visor(entorno)
        self.abre(binario=PREFIJO / "bin/orcalin-app", entorno=entorno)

    def prepara(self, trabajo):
        if trabajo == "guardar":
            if self.app.busca("push button", "Guardar algo"):
                self.app.pulsa("push button", "Guardar algo")
            if not self.app.busca("label", "cosas"):
                self.suelta(self.cosas)
            if not self.marcada("Cifrar"):
                self.cifra(CLAVE)
            return
        if trabajo == "leer" or not self.app.busca("label", "3 elementos"):
            if not self.con_disco:
                self.comprime([self.cosas], self.archivo, CLAVE)
            if self.app.busca("push button", "Guardar algo"):  # else it stays as it is
                self.app.pulsa("push button", "Guardar algo")
                self.app.espera("push button", "Guardar")
            subprocess.run([PREFIJO / "bin/orcalin-app", self.archivo], check=True)
            self.app.espera("password text", "Contraseña")
        if trabajo == "leer":
            return
        if not self.app.busca("label", "3 elementos"):
            self.manda_clave(CLAVE)
            self.lee("3 elementos")
        if trabajo == "recuperar este":
            self.pincha(self.fila("grande.txt"))
            self.recuperables("Recuperar este")

    def suelta(self, *rutas):
        """On a busy machine a source may let go before it has its answer: what
        it was told does not matter here."""
        self.arrastra(*rutas).suelta()
        self.lee(rutas[0].name)

    def empieza(self, trabajo):
        self.vez += 1
        if trabajo == "guardar":
            self.guarda_en(self.donde / f"{self.vez}.okz", "cosas.okz")
        elif trabajo == "leer":
            self.manda_clave(CLAVE)
        elif trabajo == "ver":
            self.abre_fila(self.fila(self.que_ver))
        else:
            self.recupera(trabajo.capitalize(), self.donde)

    def acaba_bien(self, trabajo):
        if trabajo == "guardar":
            self.app.espera("push button", "Guardar otra cosa", 60)
            self.app.pulsa("push button", "Guardar otra cosa")
        elif trabajo == "leer":
            self.lee("3 elementos")
        elif trabajo == "ver":
            persona.hasta(self.visor.toma, "la copia abierta")
        else:
            self.recuperado()
            self.app.pulsa("push button", "Volver")
            self.lee("3 elementos")

    def bien(self, trabajo):
        self.prepara(trabajo)
        self.empieza(trabajo)
        self.acaba_bien(trabajo)

    # What is seen, and what is left.

    def visto(self, ya, leyendo):
        """What the window has to say that it had not, and no job's progress."""
        def nuevo():
            nuevos = [t for t in self.app.textos()
                      if t not in ya and "…" not in t and not re.match(r"\d+ de \d+ a", t)]
            return nuevos or (leyendo and self.app.busca("password text", "Contraseña")
                              and ["(vuelve a pedir la contraseña)"])
        return " / ".join(self.app._hasta(nuevo, "lo que dice la ventana", 60))

    def rastro(self):
        proceso = Path("/proc") / str(self.app.proceso.pid)
        hijos = subprocess.run(["pgrep", "-P", str(self.app.proceso.pid)], capture_output=True,
                               text=True, check=False).stdout.split()
        restos = [*SESION.tmp.glob("*okz-*"), *self.casa.rglob(".orcalin-*"),
                  *self.donde.rglob(".orcalin-*")]
        return (len(hijos), sorted(r.name[:9] for r in restos),
                len(list((proceso / "fd").iterdir())), len(list((proceso / "task").iterdir())))

    def queda(self, antes):
        """What there is more of than before, once it has settled."""
        nombres = ("hijos", "ficheros", "descriptores", "hilos")
        limite = time.monotonic() + 5
        while (ahora := self.rastro()) != antes and time.monotonic() < limite:
            time.sleep(0.2)
        return ", ".join(f"{nombre}: {a} → {b}" for nombre, a, b in zip(nombres, antes, ahora)
                         if b > a) or "nada"

    # One row.

    def fila_de(self, falta, trabajo, falla):
        """`falla` brings the fault about around the job, and may do something
        while it is running by what it yields."""
        with self.subTest(falta=falta, trabajo=trabajo):
            try:
                self._fila_de(falta, trabajo, falla)
            except Exception:
                self.app.proceso.kill()
                self.app = None
                raise

    def _fila_de(self, falta, trabajo, falla):
        if self.app is None:
            self.arranca()
        self.bien(trabajo)
        antes = self.rastro()
        self.prepara(trabajo)
        ya = set(self.app.textos())
        with Latido(self.app.proceso.pid) as latido, falla() as durante:
            self.empieza(trabajo)
            if trabajo in ("guardar", "recuperar este", "recuperar todo"):
                self.espera_sin_panel()
            latido.peor = 0  # the panel of files is not what is measured
            if durante:
                durante()
            visto = self.visto(ya, trabajo == "leer")
        queda = self.queda(antes)
        if self.app.busca("push button", "Volver"):
            self.app.pulsa("push button", "Volver")
            if trabajo != "guardar":
                self.espera_contenido()
        elif self.app.busca("push button", "Guardar otra cosa"):
            self.app.pulsa("push button", "Guardar otra cosa")
        for clave in SESION.tmp.glob("okz-*"):  # stays if nothing could be started
            clave.unlink()
        self.bien(trabajo)
        despues = self.queda(antes)
        self.anota(falta, trabajo, visto, queda, despues, latido.peor)
        self.assertEqual(despues, "nada")
        if os.getloadavg()[0] < 2 * os.cpu_count():
            self.assertLess(latido.peor, QUIETA)

    def espera_contenido(self):
        """However it comes back: the list, or the question for the password."""
        persona.hasta(lambda: self.app.busca("label", "3 elementos")
                      or self.app.busca("password text", "Contraseña"), "la vuelta")

    @staticmethod
    def anota(falta, trabajo, visto, queda, despues, peor):
        siguiente = "sí" if despues == "nada" else f"sí, pero quedan {despues}"
        print(f"| {falta} | {trabajo} | {visto} | {queda} | {siguiente} | {peor * 1000:.0f} ms |",
              flush=True)

    def motor(self):
        return int(persona.hasta(self.motores, "el motor en marcha")[0].name)

    # Faults of the disks.

    @contextlib.contextmanager
    def encima(self, carpeta, opciones, durante=None):
        """Another disk in the place of the folder."""
        subprocess.run(["mount", "-t", "tmpfs", "-o", opciones, "none", carpeta], check=True)
        try:
            yield durante
        finally:
            subprocess.run(["umount", "-l", carpeta], check=True)

    def test_disco_lleno(self):
        for trabajo in ("guardar", "recuperar este", "recuperar todo"):
            self.fila_de("disco lleno", trabajo, lambda: self.encima(self.donde, "size=2m"))
        self.que_ver = "grande.txt"
        self.fila_de("sin sitio para la copia", "ver",
                     lambda: self.encima(SESION.tmp, "size=80m,mode=700"))
        @contextlib.contextmanager
        def se_llena():
            with self.encima(SESION.tmp, "size=120m,mode=700"), self.hace("kill -STOP $$"):
                yield llena
        def llena():
            motor = self.motor()
            with open(SESION.tmp / "relleno", "wb") as relleno:
                os.posix_fallocate(relleno.fileno(), 0, 117 << 20)
            os.kill(motor, signal.SIGCONT)
        self.fila_de("el disco se llena en medio", "ver", se_llena)

    def test_temporal_sin_permiso(self):
        for trabajo in TRABAJOS:
            self.fila_de("carpeta temporal de solo lectura", trabajo,
                         lambda: self.encima(SESION.tmp, "ro,size=200m,mode=700"))

    def monta(self):
        subprocess.run(["mount", "-o", "loop,ro", self.imagen, self.disco], check=True)

    def desmonta(self):
        subprocess.run(["umount", "-l", self.disco], check=True)

    def pon_disco(self):
        """What is packed, and the archive, on a disk of their own."""
        self.comprime([self.cosas], self.archivo, CLAVE)
        with open(self.imagen, "wb") as imagen:
            imagen.truncate(64 << 20)
        subprocess.run(["mkfs.ext4", "-q", "-d", self.disco, self.imagen], check=True)
        self.monta()
        self.con_disco = True

    @contextlib.contextmanager
    def desaparece(self):
        self.desmonta()
        aparte = self.disco.rename(self.casa / "aparte")
        self.disco.mkdir()
        try:
            yield None
        finally:
            self.disco.rmdir()
            aparte.rename(self.disco)
            self.monta()

    @contextlib.contextmanager
    def se_estropea(self):
        copia = self.imagen.read_bytes()
        self.desmonta()
        self.monta()
        for sitio in self.disco.rglob("*"):
            sitio.stat()
        os.truncate(self.imagen, 1 << 20)
        try:
            yield None
        finally:
            self.desmonta()
            self.imagen.write_bytes(copia)
            self.monta()

    def test_el_disco_se_va(self):
        self.pon_disco()
        try:
            for trabajo in TRABAJOS:
                self.fila_de("el disco se desmonta", trabajo, self.desaparece)
                self.fila_de("el disco deja de responder", trabajo, self.se_estropea)
        finally:
            self.desmonta()

    # Faults of the system.

    @contextlib.contextmanager
    def sin_descriptores(self):
        pid = self.app.proceso.pid
        def limita():
            abiertos = {int(f.name) for f in (Path("/proc") / str(pid) / "fd").iterdir()}
            libre = next(n for n in range(1024) if n not in abiertos)
            subprocess.run(["prlimit", "--pid", str(pid), f"--nofile={libre}:"], check=True)
        self.persona.al_confirmar = limita
        if self.en_curso == "ver":  # which asks nothing
            limita()
        try:
            yield None
        finally:
            self.persona.al_confirmar = lambda: None
            subprocess.run(["prlimit", "--pid", str(pid), "--nofile=1024:"], check=True)

    def test_sin_descriptores(self):
        for trabajo in TRABAJOS:
            self.en_curso = trabajo
            self.fila_de("sin descriptores", trabajo, self.sin_descriptores)

    # Faults of the engine.

    @contextlib.contextmanager
    def hace(self, guion, durante=None):
        ANTES.write_text(guion)
        try:
            yield durante
        finally:
            ANTES.unlink(missing_ok=True)

    def test_motor_muerto(self):
        for trabajo in TRABAJOS:
            self.fila_de("motor muerto (SIGKILL)", trabajo, lambda: self.hace(
                "kill -STOP $$", lambda: os.kill(self.motor(), signal.SIGKILL)))

    def test_motor_parado(self):
        """Which hears nothing: cancelled, and then with the window closed."""
        self.fila_de("motor parado (SIGSTOP) y cancelado", "guardar", lambda: self.hace(
            "kill -STOP $$", lambda: self.motor() and self.app.pulsa("push button", "Cancelar")))
        for trabajo in TRABAJOS:
            with self.subTest(trabajo=trabajo):
                if self.app is None or self.app.proceso.poll() is not None:
                    self.arranca()
                self.prepara(trabajo)
                with self.hace("kill -STOP $$"):
                    self.empieza(trabajo)
                    self.se_va_con(trabajo, Path(f"/proc/{self.motor()}"))

    def se_va_con(self, trabajo, motor):
        inicio = time.monotonic()
        persona.teclas("ctrl+q")
        if trabajo == "guardar":
            self.espera_panel("¿Salir sin terminar de guardar?")
            self.app.pulsa("push button", "Salir")
        self.acabada(*self.app.acaba())
        tarda = time.monotonic() - inicio
        restos = [r.name for r in SESION.tmp.glob("*okz-*")]
        self.anota("motor parado y la aplicación se cierra", trabajo, f"se va en {tarda:.1f} s",
                   f"{restos}, motor: {motor.exists()}", "nada", 0)
        self.assertFalse(motor.exists() or restos, restos)

    def test_motor_con_un_nieto(self):
        for trabajo in TRABAJOS:
            self.fila_de("motor que deja un nieto y falla", trabajo, lambda: self.hace(
                "sleep 30 & echo 'Error: me voy' >&2; exit 1"))

    def test_motor_que_inunda(self):
        guion = "yes 'Error: no cabe' | head -c 99999990 >&2; exit 1"
        for trabajo in TRABAJOS:
            if trabajo != "leer":
                self.fila_de("100 MB de errores", trabajo, lambda: self.hace(guion))
        # What lists is read in one order: this one waits until its screen goes, and on.
        self.prepara("leer")
        with self.hace(guion), Latido(self.app.proceso.pid) as latido:
            self.empieza("leer")
            self.lee("leyendo el archivo…")
            self.motor()
        self.app.pulsa("push button", "Guardar algo")
        self.bien("leer")
        self.anota("100 MB de errores", "leer", "leyendo el archivo…, hasta «Guardar algo»",
                   "el motor, hasta salir", "nada", latido.peor)

    def test_motor_sin_memoria(self):
        for trabajo in TRABAJOS:
            self.fila_de("motor sin memoria", trabajo,
                         lambda: self.hace("ulimit -v 30000"))


    # A fault of the desktop.

    def test_sin_bus_de_sesion(self):
        """The application has a bus of its own, and is seen over that of the
        session, which would go with it."""
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(bus.communicate)
        self.addCleanup(bus.kill)
        donde = bus.stdout.readline().strip()
        with unittest.mock.patch.dict(os.environ, DBUS_SESSION_BUS_ADDRESS=donde):
            otro = Bus()
        direccion = GLib.Variant("(s)", (Latido.accesibilidad(),))
        otro.ofrece("org.a11y.Bus", "/org/a11y/bus", A11Y, lambda *_: direccion)
        self.arranca(DBUS_SESSION_BUS_ADDRESS=donde)
        def se_va():
            bus.kill()
            bus.wait()
            os.kill(self.motor(), signal.SIGCONT)
        self.fila_de("el bus de sesión se va", "guardar",
                     lambda: self.hace("kill -STOP $$", se_va))


def setUpModule():
    print("| falta | trabajo | se ve | queda | el siguiente funciona | la ventana, quieta |")
    print("|---|---|---|---|---|---|", flush=True)


if __name__ == "__main__":
    unittest.main()
