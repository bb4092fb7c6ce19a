"""The installed application among other programs: what they ask of it over the
session bus, and what a second start does."""

import os
import re
import signal
import subprocess
import time
import unittest

from caso import ARBOL, SESION, Caso, persona
from instalado import PREFIJO, instala

APP = PREFIJO / "bin/orcalin-app"
NOMBRE = "es.orcalin.Orcalin"
RUTA = "/es/orcalin/Orcalin"
SERVICIO = PREFIJO / f"share/dbus-1/services/{NOMBRE}.service"
NO_ES = "Eso no es un archivo .okz."


def gdbus(orden, destino, ruta, *resto):
    return subprocess.run(["gdbus", orden, "--session", "--dest", destino, "--object-path", ruta,
                           *resto], capture_output=True, text=True, check=False, timeout=60)


def pide(metodo, *argumentos):
    return gdbus("call", NOMBRE, RUTA, "--method", metodo, *argumentos)


def al_bus(metodo, *argumentos):
    return gdbus("call", "org.freedesktop.DBus", "/org/freedesktop/DBus", "--method",
                 f"org.freedesktop.DBus.{metodo}", *argumentos)


def uris(*ficheros):
    return str([fichero.as_uri() for fichero in ficheros])


class Servicios(Caso):
    @classmethod
    def setUpClass(cls):
        instala()
        entorno = SESION.entorno()
        al_bus("UpdateActivationEnvironment",
               str({clave: entorno[clave] for clave in ("TMPDIR", "XDG_CONFIG_HOME")}))
        al_bus("ReloadConfig")

    def setUp(self):
        super().setUp()
        self.pdf = self.casa / "a.pdf"
        self.pdf.write_text("hola\n")
        self.archivos = [self.casa / nombre for nombre in ("b.OKZ", "c.okz")]
        for archivo in self.archivos:
            subprocess.run([f"{ARBOL}/libexec/orcalin/orcalin", "compress", self.pdf, "-o",
                            archivo], check=True, capture_output=True)

    def tearDown(self):
        if self.app is not None:
            self.cierra()

    # What a test is made of.

    @staticmethod
    def quien():
        """The process that has the name, or none."""
        visto = re.match(r"\(uint32 (\d+),\)",
                         al_bus("GetConnectionUnixProcessID", NOMBRE).stdout)
        return visto and int(visto.group(1))

    def la_arrancada(self):
        """The application that somebody else has started."""
        pid = persona.hasta(self.quien, "la aplicación en el bus")
        proceso = persona.Proceso(pid)
        self.addCleanup(self._remata, proceso)
        self.app = persona.Aplicacion(proceso)

    def abre(self, *ficheros, **opciones):
        super().abre(*ficheros, binario=APP, **opciones)

    def orden(self, *argumentos, **opciones):
        return subprocess.run([APP, *argumentos], env=SESION.entorno(), capture_output=True,
                              text=True, check=False, timeout=60, **opciones)

    def explora(self, archivo):
        self.app.espera("text", f"Buscar dentro de {archivo.name}")

    def al_frente(self):
        def activa():
            return subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True,
                                  check=False).stdout.strip() == self.app.ventana()
        persona.hasta(activa, "la ventana delante")

    def tapa(self):
        """Another program's window, with the keyboard."""
        otro = subprocess.Popen(["xmessage", "-center", "otro programa"])
        self.addCleanup(otro.wait)
        self.addCleanup(otro.kill)
        def delante():
            return subprocess.run(["xdotool", "getactivewindow", "getwindowname"],
                                  capture_output=True, text=True,
                                  check=False).stdout.strip() == "xmessage"
        persona.hasta(delante, "el otro programa delante")

    # The services.

    def test_el_bus_la_arranca(self):
        rechazo = pide("es.orcalin.Servicios.abrir", uris(self.pdf))
        self.assertEqual((rechazo.returncode, rechazo.stderr.partition("Error: ")[2].strip()),
                         (1, f"GDBus.Error:es.orcalin.Servicios.Error: {NO_ES}"))
        pid = self.quien()
        self.assertEqual(pide("es.orcalin.Servicios.abrir",
                              uris(self.pdf, self.archivos[0])).stdout, "()\n")
        self.la_arrancada()
        self.assertEqual(self.app.proceso.pid, pid)
        self.explora(self.archivos[0])
        interfaces = gdbus("introspect", NOMBRE, RUTA).stdout
        for miembro in ("interface es.orcalin.Servicios", "comprimir(in  as", "abrir(in  as",
                        "interface org.freedesktop.Application", "ActivateAction(in  s"):
            self.assertIn(miembro, interfaces)
        # From the browser to the compression screen, an archive too.
        pide("es.orcalin.Servicios.comprimir", uris(self.archivos[1]))
        self.lee("c.okz")

    def test_la_entrada_de_menu(self):
        raros = [self.casa / nombre for nombre in ("-x y", "l'«año»", 'dos "comillas"')]
        for raro in raros:
            raro.touch()
        self.assertEqual(self.orden("--servicio", "comprimir", "--", *(r.name for r in raros),
                                    cwd=self.casa).returncode, 0)
        self.la_arrancada()
        for raro in raros:
            self.lee(raro.name)

        with subprocess.Popen(["dbus-monitor", "--session",
                               "interface=org.freedesktop.Notifications"],
                              stdout=subprocess.PIPE, text=True) as testigo:
            persona.hasta(lambda: "NameLost" in testigo.stdout.readline(), "el testigo a la escucha")
            orden = self.orden("--servicio", "abrir", self.pdf)
            aviso = persona.hasta(lambda: NO_ES in testigo.stdout.readline(), "el aviso")
            testigo.kill()
        self.assertTrue(aviso)
        self.assertEqual((orden.returncode, orden.stdout, orden.stderr), (1, "", NO_ES + "\n"))

    def test_la_entrada_de_menu_sin_fichero_de_servicio(self):
        dicho = SERVICIO.read_text()
        self.addCleanup(al_bus, "ReloadConfig")
        self.addCleanup(SERVICIO.write_text, dicho)
        SERVICIO.unlink()
        al_bus("ReloadConfig")
        rechazo = self.orden("--servicio", "abrir", self.pdf)
        self.assertEqual((rechazo.returncode, rechazo.stderr), (1, NO_ES + "\n"))
        self.assertIsNone(self.quien())
        self.assertEqual(self.orden("--servicio", "abrir", self.archivos[0]).returncode, 0)
        self.la_arrancada()
        self.explora(self.archivos[0])

    # One process.

    def test_el_segundo_arranque_entrega_y_acaba(self):
        self.abre(self.archivos[0])
        self.explora(self.archivos[0])
        for quita_de_la_vista in (self.tapa, self.minimiza):
            with self.subTest(quita_de_la_vista=quita_de_la_vista.__name__):
                ventana = self.app.ventana()
                quita_de_la_vista()
                segundo = self.orden("c.okz", cwd=self.casa)
                self.assertEqual((segundo.returncode, segundo.stdout, segundo.stderr), (0, "", ""))
                self.explora(self.archivos[1])
                self.al_frente()
                self.assertEqual(self.app.ventana(), ventana)
        self.assertEqual(self.quien(), self.app.proceso.pid)
        self.orden(self.pdf)
        self.explora(self.archivos[1])

    def test_el_que_cede_no_toca_lo_que_el_otro_tiene_abierto(self):
        self.abre()
        self.al_frente()
        copia = SESION.tmp / "orcalin-ver/una/copia.txt"
        copia.parent.mkdir(parents=True)
        copia.touch()
        self.assertEqual(self.orden("--espera").returncode, 0)
        self.assertTrue(copia.exists())

    def minimiza(self):
        ventana = self.app.ventana()
        subprocess.run(["xdotool", "windowminimize", ventana], check=True)
        persona.hasta(lambda: "Iconic" in subprocess.run(
            ["xprop", "-id", ventana, "WM_STATE"], capture_output=True, text=True,
            check=True).stdout, "la ventana minimizada")

    def test_dos_a_la_vez_son_uno(self):
        ambos = [persona.lanza(APP, [archivo], SESION.entorno()) for archivo in self.archivos]
        for proceso in ambos:
            self.addCleanup(self._remata, proceso)
        persona.hasta(lambda: any(p.poll() == 0 for p in ambos), "el fin de uno de los dos")
        self.app = persona.Aplicacion(next(p for p in ambos if p.poll() is None))
        self.app.espera("push button", "Guardar algo")

    def test_la_ficha_llega_a_la_ventana_y_no_a_los_hijos(self):
        espia = self.casa / "bin/xdg-open"
        espia.parent.mkdir()
        visto = self.casa / "visto"
        espia.write_text(f'#!/bin/sh\nenv > "{visto}.parte"; mv "{visto}.parte" "{visto}"\n')
        espia.chmod(0o755)
        entorno = SESION.entorno()
        entorno["PATH"] = f"{espia.parent}:{entorno['PATH']}"
        super().abre(self.archivos[0], binario=APP, entorno=dict(
            entorno, DESKTOP_STARTUP_ID="uno_TIME5", XDG_ACTIVATION_TOKEN="dos"))
        self.ficha_es("uno_TIME5")
        fila = self.app.espera("list item", "a.pdf, archivo, 5 bytes")
        subprocess.run(["xdotool", "mousemove", *map(str, persona.centro(fila)), "click",
                        "--repeat", "2", "--delay", "60", "1"], check=True)
        persona.hasta(visto.exists, "lo abierto")
        self.assertNotIn("uno_TIME5", visto.read_text())
        self.assertNotIn("XDG_ACTIVATION_TOKEN", visto.read_text())
        subprocess.run([APP], check=True, env=dict(entorno, DESKTOP_STARTUP_ID="tres_TIME6"))
        self.ficha_es("tres_TIME6")

    def ficha_es(self, ficha):
        persona.hasta(lambda: f'"{ficha}"' in subprocess.run(
            ["xprop", "-id", self.app.ventana(), "_NET_STARTUP_ID"], capture_output=True,
            text=True, check=True).stdout, f"la ficha {ficha}")

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

    def test_sin_bus(self):
        entorno = dict(SESION.entorno(), DBUS_SESSION_BUS_ADDRESS="unix:path=/no/hay")
        sueltos = [persona.lanza(APP, [archivo], entorno) for archivo in self.archivos]
        for suelto in sueltos:
            self.addCleanup(self._remata, suelto)
        for suelto in sueltos:
            subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--pid",
                            str(suelto.pid), "--name", "orcalin"], check=True,
                           capture_output=True, timeout=20)
            self.assertIsNone(suelto.poll())

    # The way out.

    def test_salir_por_el_bus(self):
        self.abre()
        mala = pide("org.freedesktop.Application.ActivateAction", "volar", "[]", "{}")
        self.assertIn("No hay ninguna acción «volar».", mala.stderr)
        pide("org.freedesktop.Application.ActivateAction", "salir", "[]", "{}")
        self.acabada(*self.app.acaba())
        self.assertIsNone(self.quien())


if __name__ == "__main__":
    unittest.main()
