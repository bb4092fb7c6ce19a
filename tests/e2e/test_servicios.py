"""The installed application among other programs: what they ask of it over the
session bus, and what a second start does."""

import signal
import subprocess
import time

from buses import Bus, GLib
from caso import SESION, Caso, persona
from instalado import PREFIJO, instala

APP = PREFIJO / "bin/orcalin-app"
NOMBRE = "es.orcalin.Orcalin"
RUTA = "/es/orcalin/Orcalin"
SERVICIO = PREFIJO / f"share/dbus-1/services/{NOMBRE}.service"
NO_ES = "Eso no es un archivo .okz."


class Servicios(Caso):
    @classmethod
    def setUpClass(cls):
        instala()
        cls.bus = Bus()
        cls.addClassCleanup(cls.bus.cierra)
        entorno = SESION.entorno()
        cls.bus.al_bus("UpdateActivationEnvironment", "(a{ss})",
                       {clave: entorno[clave] for clave in ("TMPDIR", "XDG_CONFIG_HOME")})
        cls.bus.al_bus("ReloadConfig")

    def setUp(self):
        super().setUp()
        self.pdf = self.casa / "a.pdf"
        self.pdf.write_text("hola\n")
        self.archivos = [self.casa / nombre for nombre in ("b.OKZ", "c.okz")]
        for archivo in self.archivos:
            self.comprime([self.pdf], archivo)

    def pide(self, metodo, *ficheros):
        self.bus.llama(NOMBRE, RUTA, "es.orcalin.Servicios", metodo, "(as)",
                       [fichero.as_uri() for fichero in ficheros])

    def actua(self, accion):
        self.bus.llama(NOMBRE, RUTA, "org.freedesktop.Application", "ActivateAction", "(sava{sv})",
                       accion, [], {})

    def quien(self):
        return self.bus.proceso_de(NOMBRE)

    def la_arrancada(self):
        """The application that somebody else has started."""
        proceso = persona.Proceso(persona.hasta(self.quien, "la aplicación en el bus"))
        self.addCleanup(self.remata, proceso)
        self.app = persona.Aplicacion(proceso)

    def abre(self, *ficheros, **opciones):
        super().abre(*ficheros, binario=APP, **opciones)

    def orden(self, *argumentos):
        """What a start says that comes to an end by itself: status, output, errors."""
        dicho = subprocess.run([APP, *argumentos], env=SESION.entorno(), capture_output=True,
                               text=True, check=False, timeout=60, cwd=self.casa)
        return dicho.returncode, dicho.stdout, dicho.stderr

    def explora(self, archivo):
        self.app.espera("text", f"Buscar dentro de {archivo.name}")

    def tapa(self):
        """Another program's window, with the keyboard."""
        otro = subprocess.Popen(["xmessage", "-center", "otro programa"])
        self.addCleanup(otro.wait)
        self.addCleanup(otro.kill)
        persona.hasta(lambda: persona.delante() not in ("", self.app.ventana()),
                      "el otro programa delante")

    def ficha_es(self, ficha):
        persona.hasta(lambda: f'"{ficha}"' in subprocess.run(
            ["xprop", "-id", self.app.ventana(), "_NET_STARTUP_ID"], capture_output=True,
            text=True, check=True).stdout, f"la ficha {ficha}")

    def test_el_bus_la_arranca_y_la_acaba(self):
        with self.assertRaises(GLib.Error) as rechazo:
            self.pide("abrir", self.pdf)
        self.assertIn(f"es.orcalin.Servicios.Error: {NO_ES}", rechazo.exception.message)
        pid = self.quien()
        self.pide("abrir", self.pdf, self.archivos[0])
        self.la_arrancada()
        self.assertEqual(self.app.proceso.pid, pid)
        self.explora(self.archivos[0])
        # From the browser to the compression screen, an archive too.
        self.pide("comprimir", self.archivos[1])
        self.lee("c.okz")
        self.app.pulsa("push button", "Guardar")
        self.espera_panel("Guardar")
        self.pide("abrir", self.archivos[0])
        self.espera_sin_panel()  # what it asked for is gone
        self.explora(self.archivos[0])
        with self.assertRaises(GLib.Error) as rechazo:
            self.actua("volar")
        self.assertIn("No hay ninguna acción «volar».", rechazo.exception.message)
        self.actua("salir")
        self.acabada(*self.app.acaba())
        self.assertIsNone(self.quien())

    def test_la_entrada_de_menu(self):
        raros = [self.casa / nombre for nombre in ("-x y", "l'«año»", 'dos "comillas"')]
        for raro in raros:
            raro.touch()
        self.assertEqual(self.orden("--servicio", "comprimir", "--", *(r.name for r in raros)),
                         (0, "", ""))
        self.la_arrancada()
        for raro in raros:
            self.lee(raro.name)
        with subprocess.Popen(["dbus-monitor", "--session",
                               "interface=org.freedesktop.Notifications"],
                              stdout=subprocess.PIPE, text=True) as testigo:
            persona.hasta(lambda: "NameLost" in testigo.stdout.readline(), "el testigo a la escucha")
            dicho = self.orden("--servicio", "abrir", self.pdf)
            persona.hasta(lambda: NO_ES in testigo.stdout.readline(), "el aviso")
            testigo.kill()
        self.assertEqual(dicho, (1, "", NO_ES + "\n"))

    def test_la_entrada_de_menu_sin_fichero_de_servicio(self):
        self.addCleanup(self.bus.al_bus, "ReloadConfig")
        self.addCleanup(SERVICIO.write_text, SERVICIO.read_text())
        SERVICIO.unlink()
        self.bus.al_bus("ReloadConfig")
        self.assertEqual(self.orden("--servicio", "abrir", self.pdf), (1, "", NO_ES + "\n"))
        self.assertIsNone(self.quien())
        self.assertEqual(self.orden("--servicio", "abrir", self.archivos[0])[0], 0)
        self.la_arrancada()
        self.explora(self.archivos[0])

    def test_el_segundo_arranque_entrega_y_acaba(self):
        copia = SESION.tmp / "orcalin-ver/copia.txt"
        copia.parent.mkdir(mode=0o700)
        copia.touch()
        self.abre(self.archivos[0])
        self.explora(self.archivos[0])
        self.assertFalse(copia.parent.exists())  # left over from another time
        copia.parent.mkdir(mode=0o700)
        copia.touch()
        ventana = self.app.ventana()
        for quita_de_la_vista in (self.tapa, self.app.minimiza):
            quita_de_la_vista()
            self.assertEqual(self.orden("c.okz"), (0, "", ""))
            self.explora(self.archivos[1])
            self.app.espera_delante()
            self.assertEqual(self.app.ventana(), ventana)
        self.assertEqual(self.quien(), self.app.proceso.pid)
        self.orden(self.pdf)  # is no archive
        self.explora(self.archivos[1])
        self.assertEqual(self.orden("--espera")[0], 0)
        self.assertTrue(copia.exists())  # what the first has open is not the others' to tidy up

    def lanza_los_dos(self, entorno):
        dos = [persona.lanza(APP, [archivo], entorno) for archivo in self.archivos]
        for proceso in dos:
            self.addCleanup(self.remata, proceso)
        return dos

    def test_dos_a_la_vez_son_uno_y_sin_bus_dos(self):
        dos = self.lanza_los_dos(SESION.entorno())
        persona.hasta(lambda: any(p.poll() == 0 for p in dos), "el fin de uno de los dos")
        self.app = persona.Aplicacion(next(p for p in dos if p.poll() is None))
        self.app.espera("push button", "Guardar algo")
        sin_bus = dict(SESION.entorno(), DBUS_SESSION_BUS_ADDRESS="unix:path=/no/hay")
        for suelto in self.lanza_los_dos(sin_bus):
            persona.hasta_ventana(suelto.pid, "orcalin")
            self.assertIsNone(suelto.poll())

    def test_la_ficha_llega_a_la_ventana_y_no_a_los_hijos(self):
        espia = self.casa / "bin/xdg-open"
        espia.parent.mkdir()
        visto = self.casa / "visto"
        espia.write_text(f'#!/bin/sh\nenv > "{visto}.parte"; mv "{visto}.parte" "{visto}"\n')
        espia.chmod(0o755)
        entorno = SESION.entorno()
        entorno["PATH"] = f"{espia.parent}:{entorno['PATH']}"
        self.abre(self.archivos[0], entorno=dict(
            entorno, DESKTOP_STARTUP_ID="uno_TIME5", XDG_ACTIVATION_TOKEN="dos"))
        self.ficha_es("uno_TIME5")
        self.abre_fila(self.fila("a.pdf"))
        persona.hasta(visto.exists, "lo abierto")
        self.assertNotIn("uno_TIME5", visto.read_text())
        self.assertNotIn("XDG_ACTIVATION_TOKEN", visto.read_text())
        subprocess.run([APP], check=True, env=dict(entorno, DESKTOP_STARTUP_ID="tres_TIME6"))
        self.ficha_es("tres_TIME6")

    def test_un_primero_que_no_contesta(self):
        self.abre(self.archivos[0])
        primero = self.app
        primero.proceso.send_signal(signal.SIGSTOP)
        try:
            antes = time.monotonic()
            self.abre(self.archivos[1])
            self.explora(self.archivos[1])
            self.assertLess(time.monotonic() - antes, 15)
            self.cierra()
        finally:
            primero.proceso.send_signal(signal.SIGCONT)
        self.app = primero
        self.explora(self.archivos[1])  # it heard after all
