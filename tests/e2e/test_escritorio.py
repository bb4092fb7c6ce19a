"""What the application and the desktop have to say to each other."""

import subprocess
import time
import unittest
from urllib.parse import quote

from buses import Bus, GLib
from caso import SESION, Caso, persona
from instalado import PREFIJO, CasoInstalado, pon_guion

GESTOR = "org.freedesktop.FileManager1"
DUNST = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications", "org.dunstproject.cmd0")
PORTAL = "org.freedesktop.portal.Desktop"
OBJETO = "/org/freedesktop/portal/desktop"
AJUSTES = "org.freedesktop.portal.Settings"
APARIENCIA = "org.freedesktop.appearance"
METODO = """<method name="{}"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method>"""
BOTON = "Ver en el Finder"
LENTO = ("error \\n10/40 ficheros (25.0%), 7 MiB\\n", "espera 1500", "escribe-destino 333")


def con_bus(caso):
    bus = Bus()
    caso.addCleanup(bus.cierra)
    return bus


class Trabajos(CasoInstalado):
    """Jobs, as they are seen from outside the window."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        SESION._lanza(["dunst", "-conf", "/dev/null"])

    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)
        self.origen = self.casa / "carta & <b>cía.txt"
        self.origen.write_bytes(bytes(1000))
        self.guardados = 0

    def guarda(self, *guion):
        pon_guion(*guion)
        self.suelta(self.origen)
        self.guardados += 1
        self.guarda_en(self.casa / f"carta & <b>{self.guardados}.okz", f"{self.origen.name}.okz")

    def otra(self):
        self.app.pulsa("push button", "Guardar otra cosa")
        self.vacia()

    def espera_delante(self, delante=True):
        marco = self.app.espera("frame", "orcalin")
        def esta():
            marco.clear_cache()
            return marco.get_state_set().contains(persona.Atspi.StateType.ACTIVE) == delante
        persona.hasta(esta, f"la ventana {'delante' if delante else 'detrás'}")

    def aparta(self):
        self.espera_delante()
        ventana = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, check=True)
        subprocess.run(["xdotool", "windowminimize", ventana.stdout.strip()], check=True)

    def mostradas(self):
        datos = self.bus.llama(DUNST[0], DUNST[1], "org.freedesktop.DBus.Properties", "Get",
                               "(ss)", DUNST[2], "displayedLength")
        return datos[0]

    def test_el_final_se_avisa_a_quien_no_mira(self):
        persona.hasta(lambda: self.mostradas() == 0, "el demonio de avisos")
        self.abre_instalada()
        self.guarda("escribe-destino 333")
        self.app.espera("push button", BOTON)
        self.otra()
        for guion, titulo, texto in (
                (LENTO, "Guardado en «carta & <b>2.okz»",
                 "1 kB  →  333 bytes\nahorras 667 bytes · 66% menos"),
                ((*LENTO, r"error Error: no & <b>cabe\n", "sale 1"),
                 "No se pudo guardar", "no & <b>cabe")):
            with self.subTest(titulo=titulo):
                self.guarda(*guion)
                self.app.espera("push button", "Cancelar")
                self.assertEqual(self.mostradas(), 0)  # nothing was said in front
                self.aparta()
                persona.hasta(lambda: self.mostradas() == 1, "el aviso")
                self.bus.llama(*DUNST, "NotificationAction", "(u)", 0)
                self.espera_delante()
                persona.hasta(lambda: self.mostradas() == 0, "el aviso retirado")
                ultima = self.bus.llama(*DUNST, "NotificationListHistory")[0][0]
                self.assertEqual(ultima["summary"], titulo)
                self.assertEqual(ultima["body"].replace("&amp;", "&").replace("&lt;", "<")
                                 .replace("&gt;", ">"), texto)
                self.assertEqual(ultima["appname"], "Orcalin")
                if titulo.startswith("Guardado"):
                    self.otra()

    def test_el_final_se_avisa_aunque_se_mire_si_la_pantalla_ya_no_esta(self):
        persona.hasta(lambda: self.mostradas() == 0, "el demonio de avisos")
        self.abre_instalada()
        self.guarda(LENTO[0], "espera 4000", "escribe-destino 333")
        self.app.espera("push button", "Cancelar")
        otro = self.casa / "otro.okz"
        otro.touch()
        subprocess.run([PREFIJO / "bin/orcalin-app", otro], env=SESION.entorno(), check=True)
        self.app.espera("push button", "Guardar algo")
        self.espera_delante()
        persona.hasta(lambda: self.mostradas() == 1, "el aviso")
        self.espera_delante()
        self.bus.llama(*DUNST, "NotificationCloseAll")
        persona.hasta(lambda: self.mostradas() == 0, "el aviso retirado")
        ultima = self.bus.llama(*DUNST, "NotificationListHistory")[0][0]
        self.assertEqual(ultima["summary"], "Guardado en «carta & <b>1.okz»")

    def test_el_progreso_en_la_barra_de_tareas(self):
        dichas = self.bus.oye("com.canonical.Unity.LauncherEntry", "Update")
        self.abre_instalada()
        avance = [f"error \\n{n}/400 ficheros ({n / 4}%), 7 MiB\\n" for n in range(1, 400)]
        pausas = ["espera 5"] * len(avance)
        self.guarda(*(linea for par in zip(avance, pausas) for linea in par), "escribe-destino 333")
        self.app.espera("push button", BOTON)
        persona.hasta(lambda: dichas and not dichas[-1][1]["progress-visible"], "el final")
        self.assertEqual({uri for uri, _ in dichas}, {"application://es.orcalin.Orcalin.desktop"})
        partes = [datos["progress"] for _, datos in dichas if datos["progress-visible"]]
        self.assertEqual(partes, sorted(partes))
        self.assertGreater(partes[-1], 0.5)
        self.assertTrue(5 <= len(partes) <= 40, len(partes))
        self.otra()
        self.guarda(*LENTO[:1], "espera 60000")
        persona.hasta(lambda: dichas[-1][1] == {"progress": 0.25, "progress-visible": True},
                      "la barra otra vez")
        self.cierra()
        persona.hasta(lambda: not dichas[-1][1]["progress-visible"], "la barra retirada al salir")


class Revelar(CasoInstalado):
    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)
        self.carpeta = self.casa / "con ñ y espacio"
        self.carpeta.mkdir()
        (self.carpeta / "antes.txt").touch()
        self.dicho = self.casa / "abierta"
        guion = self.escribe(".local/share/abre", f"#!/bin/sh\nprintf %s \"$1\" >'{self.dicho}'\n")
        guion.chmod(0o755)
        self.escribe(".local/share/applications/abre.desktop",
                     f"[Desktop Entry]\nType=Application\nName=Abre\nExec={guion} %f\n")
        (SESION.carpeta / "claro").mkdir(exist_ok=True)
        (SESION.carpeta / "claro/mimeapps.list").write_text(
            "[Default Applications]\ninode/directory=abre.desktop\n")

    def escribe(self, nombre, texto):
        fichero = self.casa / nombre
        fichero.parent.mkdir(parents=True, exist_ok=True)
        fichero.write_text(texto)
        return fichero

    def gestor(self, orden):
        """The program that the bus starts for who asks for the file manager."""
        self.escribe(f".local/share/dbus-1/services/{GESTOR}.service",
                     f"[D-BUS Service]\nName={GESTOR}\nExec={orden}\n")
        self.bus.llama("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ReloadConfig")

    def guardado(self):
        origen = self.casa / "carta.txt"
        origen.write_bytes(bytes(1000))
        pon_guion("escribe-destino 333")
        self.abre_instalada()
        self.suelta(origen)
        self.guarda_en(self.carpeta / "el archivo.okz", "carta.txt.okz")
        self.app.espera("push button", BOTON)

    def test_un_gestor_de_verdad_lo_ensena_elegido(self):
        self.gestor("/usr/bin/Thunar --gapplication-service")
        self.guardado()
        self.bus.llama("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "StartServiceByName",
                       "(su)", GESTOR, 0)
        self.app.pulsa("push button", BOTON)
        self.addCleanup(subprocess.run, ["thunar", "--quit"], check=False)
        # Its icons have no names on the bus; its status bar names what is selected.
        def elegido():
            escritorio = persona.Atspi.get_desktop(0)
            for i in range(escritorio.get_child_count()):
                otra = escritorio.get_child_at_index(i)
                if otra is not None and otra.get_name() == "Thunar":
                    yield from (nodo.get_name() for nodo in persona.todos(otra)
                                if nodo.get_role_name() == "status bar")
        persona.hasta(lambda: any(dice.startswith('"el archivo.okz"') for dice in elegido()),
                      "el archivo elegido")
        self.assertFalse(self.dicho.exists())

    def test_uno_que_se_cuelga_al_arrancar_o_al_contestar(self):
        self.gestor("/bin/sleep 60")
        self.guardado()
        self.ensena_la_carpeta()
        self.bus.ofrece(GESTOR, f"/{GESTOR.replace('.', '/')}",
                        f"<node><interface name='{GESTOR}'><method name='ShowItems'>"
                        "<arg type='as' direction='in'/><arg type='s' direction='in'/>"
                        "</method></interface></node>", self.recuerda)
        self.pedido = None
        self.ensena_la_carpeta()
        uri = "file://" + quote(str(self.carpeta / "el archivo.okz"))
        self.assertEqual(self.pedido, ("ShowItems", ([uri], "")))

    def recuerda(self, metodo, argumentos):
        self.pedido = (metodo, argumentos)

    def ensena_la_carpeta(self):
        self.dicho.unlink(missing_ok=True)
        antes = time.monotonic()
        self.app.pulsa("push button", BOTON)
        self.viva()
        persona.hasta(lambda: self.dicho.exists() and self.dicho.read_text(), "la carpeta", 10)
        self.assertGreater(time.monotonic() - antes, 1.5)
        self.assertEqual(self.dicho.read_text().rstrip("/"), str(self.carpeta))


class Apariencia(Caso):
    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)
        self.valores = {"color-scheme": GLib.Variant("u", 0),
                        "accent-color": GLib.Variant("(ddd)", (-1, -1, -1))}

    def portal(self, *metodos, contesta=True):
        def atiende(metodo, argumentos):
            if not contesta:
                return None
            valor = GLib.Variant("v", self.valores[argumentos[1]])
            if metodo == "Read":  # once more than one would think
                valor = GLib.Variant("v", valor)
            return GLib.Variant.new_tuple(valor)
        self.bus.ofrece(PORTAL, OBJETO, f"<node><interface name='{AJUSTES}'>"
                        f"{''.join(map(METODO.format, metodos))}</interface></node>", atiende)

    def cambia(self, clave, valor):
        self.valores[clave] = valor
        self.bus.emite(OBJETO, AJUSTES, "SettingChanged",
                       GLib.Variant("(ssv)", (APARIENCIA, clave, valor)))

    @staticmethod
    def color(x, y):
        dicho = subprocess.run(["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth",
                                "8", "rgb:-"], capture_output=True, check=True).stdout
        return tuple(dicho)

    def fondo(self):
        marco = self.app.espera("frame", "orcalin").get_extents(persona.Atspi.CoordType.SCREEN)
        return self.color(marco.x + 5, marco.y + marco.height - 8)

    def marca(self):
        """The ground of a ticked box."""
        self.app.espera("check box", "Cifrar").clear_cache()
        caja = self.app.espera("check box", "Cifrar").get_extents(persona.Atspi.CoordType.SCREEN)
        return self.color(caja.x + 2, caja.y + caja.height // 2 + 5)

    def oscuro(self):
        persona.hasta(lambda: max(self.fondo()) < 70, "el fondo oscuro")

    def claro(self):
        persona.hasta(lambda: min(self.fondo()) > 200, "el fondo claro")

    def test_sigue_al_escritorio_mientras_corre(self):
        self.valores["color-scheme"] = GLib.Variant("u", 1)
        self.portal("ReadOne", "Read")
        self.abre()
        self.oscuro()
        self.app.pulsa("check box", "Cifrar")
        self.cambia("accent-color", GLib.Variant("(ddd)", (0.9, 0.2, 0.1)))
        persona.hasta(lambda: self.marca() == (230, 51, 26), "el color de acento")
        self.cambia("color-scheme", GLib.Variant("u", 2))
        self.claro()
        rojo, verde, azul = self.marca()
        self.assertTrue(rojo > 120 and max(verde, azul) < 60, "el acento no sigue ahí")
        self.cambia("accent-color", GLib.Variant("(ddd)", (7, 0, 0)))  # there is none
        persona.hasta(lambda: self.marca()[2] > 120, "el acento de siempre")
        self.cambia("color-scheme", GLib.Variant("u", 1))
        self.oscuro()
        self.cambia("color-scheme", GLib.Variant("u", 0))
        self.claro()
        self.cierra()

    def test_un_portal_viejo_y_la_paleta_de_un_escritorio_oscuro(self):
        self.valores["accent-color"] = GLib.Variant("(ddd)", (0.9, 0.2, 0.1))
        self.portal("Read")
        self.abre(entorno=SESION.entorno(oscuro=True))
        self.app.pulsa("check box", "Cifrar")
        persona.hasta(lambda: self.marca() == (230, 51, 26), "el color de acento")
        self.oscuro()
        self.assertEqual(self.fondo(), (32, 35, 38))  # the desktop's own dark
        self.cambia("color-scheme", GLib.Variant("u", 2))
        self.claro()
        self.cierra()

    def test_un_portal_que_no_contesta(self):
        self.portal("ReadOne", "Read", contesta=False)
        antes = time.monotonic()
        self.abre()
        self.claro()
        self.assertLess(time.monotonic() - antes, 10)
        self.cambia("color-scheme", GLib.Variant("u", 1))
        self.oscuro()
        self.cierra()


if __name__ == "__main__":
    unittest.main()
