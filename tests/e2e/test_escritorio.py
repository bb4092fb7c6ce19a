"""What the application and the desktop have to say to each other."""

import subprocess
import time
import unittest
import unittest.mock
from urllib.parse import quote

from buses import Avisos, Bus, Portal
from caso import SESION, Caso, persona
import accesible  # only with a session
from instalado import PREFIJO, CasoInstalado, pon_guion

GESTOR = "org.freedesktop.FileManager1"
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
        self.avisos = Avisos(self.bus)
        self.origen = self.casa / "carta & <b>cía.txt"
        self.origen.write_bytes(bytes(1000))
        self.guardados = 0
        self.espera_avisos(0)
        self.abre_instalada()

    def guarda(self, *guion):
        pon_guion(*guion)
        self.suelta(self.origen)
        self.guardados += 1
        self.guarda_en(self.casa / f"carta & <b>{self.guardados}.okz", f"{self.origen.name}.okz")

    def otra(self):
        self.app.pulsa("push button", "Guardar otra cosa")
        self.vacia()

    def espera_avisos(self, cuantos):
        persona.hasta(lambda: self.avisos.ala_vista() == cuantos, f"{cuantos} avisos")

    def espera_delante(self):
        persona.hasta(lambda: persona.delante() == self.app.ventana(), "la ventana delante")

    def test_el_final_se_avisa_a_quien_no_mira(self):
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
                self.espera_delante()
                self.assertEqual(self.avisos.ala_vista(), 0)  # nothing was said in front
                subprocess.run(["xdotool", "windowminimize", self.app.ventana()], check=True)
                self.espera_avisos(1)
                self.avisos.contesta()
                self.espera_delante()
                self.espera_avisos(0)
                self.assertEqual(self.avisos.ultimo(), ("Orcalin", titulo, texto))
                if titulo.startswith("Guardado"):
                    self.otra()

    def test_el_final_se_avisa_aunque_se_mire_si_la_pantalla_ya_no_esta(self):
        self.guarda(LENTO[0], "espera 4000", "escribe-destino 333")
        self.app.espera("push button", "Cancelar")
        otro = self.casa / "otro.okz"
        otro.touch()
        subprocess.run([PREFIJO / "bin/orcalin-app", otro], env=SESION.entorno(), check=True)
        self.app.espera("push button", "Guardar algo")
        self.espera_avisos(1)
        self.espera_delante()
        self.avisos.retira()
        self.espera_avisos(0)
        self.assertEqual(self.avisos.ultimo()[1], "Guardado en «carta & <b>1.okz»")

    def test_el_progreso_en_la_barra_de_tareas(self):
        dichas = self.bus.oye("com.canonical.Unity.LauncherEntry", "Update")
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

    def test_nada_lo_abre_ni_lo_ensena(self):
        self.gestor("/bin/false")
        self.escribe("bin/xdg-open", "#!/bin/sh\nexit 3\n").chmod(0o755)
        pon_guion(r"salida -0644 1 a.txt\n")
        with unittest.mock.patch.dict("os.environ", PATH=f"{self.casa}/bin:/usr/bin:/bin"):
            self.abre_instalada(self.escribe("x.okz", ""))
        self.lee("1 elementos")
        pon_guion("crea-entrada hola")
        persona.teclas("Down", "Return")
        self.lee("No hay con qué abrir «a.txt».")

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


RAROS = ["n" * 249 + "ñ.txt", "מסמך שלום.txt", "ملف رقم ٣.pdf", "🎉 fiesta.jpg", "cafe\u0301.txt",
         "dos\nlíneas.txt"]


class Local(Caso):
    """The user's numbers, scale and names."""

    def archivo(self, *nombres):
        for nombre in nombres:
            (self.casa / nombre).write_bytes(bytes(1_234_567))
        archivo = self.sesion.tmp / "archivo.okz"
        self.comprime([self.casa / nombre for nombre in nombres], archivo)
        return archivo

    def test_numeros_del_usuario_y_palabras_nuestras(self):
        archivo = self.archivo("a.bin")
        for local, tamano in (("es_ES", "1,2 MB"), ("en_US", "1.2 MB"), ("de_DE", "1,2 MB"),
                              ("ar_EG", "١٫٢ MB")):
            with self.subTest(local=local):
                self.abre(archivo, entorno=SESION.entorno(local=local))
                self.app.espera("list item", f"a.bin, archivo, {tamano}")
                self.app.pulsa("push button", "Recuperar todo")
                self.app.espera("text", "Directorio:")
                persona.teclas("Escape")
                self.espera_sin_panel()
                self.cierra()

    def encogida(self, *ficheros):
        """The smallest window, twice as large."""
        self.abre(*ficheros, entorno=SESION.entorno(escala=2, local="ar_EG"))
        marco = self.app.espera("frame", "orcalin")
        alto = persona.caja(marco)[3]
        subprocess.run(["xdotool", "windowsize", self.app.ventana(), "9", "9"], check=True)
        persona.hasta(lambda: persona.caja(marco)[3] < alto, "la ventana encogida")

    def test_todo_cabe_en_la_ventana_mas_pequena(self):
        self.escala = 2
        archivo = self.archivo(*RAROS)
        self.encogida()
        self.suelta(*(self.casa / nombre for nombre in RAROS))
        for casilla in ("Comprimir al máximo", "Cifrar"):
            self.app.pulsa("check box", casilla)
        self.app.espera("password text", "Contraseña")
        self.lee("6 archivos · ٧٫٤ MB")
        self.assertEqual(accesible.faltas(self.app.raiz), [])
        self.cierra()
        self.encogida(archivo)
        for nombre in RAROS:
            self.app.espera("list item", nombre.replace("\n", "\\x0a") + ", archivo, ١٫٢ MB")
        self.assertEqual(accesible.faltas(self.app.raiz), [])
        self.cierra()


class Apariencia(Caso):
    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)

    def tearDown(self):
        self.cierra()

    def fondo(self):
        x, y, _, alto = persona.caja(self.app.espera("frame", "orcalin"))
        return persona.color(x + 5, y + alto - 8)

    def marca(self):
        """The ground of a ticked box."""
        x, y, _, alto = persona.caja(self.app.espera("check box", "Cifrar"))
        return persona.color(x + 2, y + alto // 2 + 5)

    def oscuro(self):
        persona.hasta(lambda: max(self.fondo()) < 70, "el fondo oscuro")

    def claro(self):
        persona.hasta(lambda: min(self.fondo()) > 200, "el fondo claro")

    def acento(self):
        persona.hasta(lambda: self.marca() == (230, 51, 26), "el color de acento")

    def test_sigue_al_escritorio_mientras_corre(self):
        portal = Portal(self.bus, ["ReadOne", "Read"], esquema=1)
        self.abre()
        self.oscuro()
        self.app.pulsa("check box", "Cifrar")
        portal.acento(0.9, 0.2, 0.1)
        self.acento()
        portal.esquema(2)
        self.claro()
        rojo, verde, azul = self.marca()
        self.assertTrue(rojo > 120 and max(verde, azul) < 60, "el acento no sigue ahí")
        portal.acento(7, 0, 0)  # there is none
        persona.hasta(lambda: self.marca()[2] > 120, "el acento de siempre")
        portal.esquema(1)
        self.oscuro()
        portal.esquema(0)
        self.claro()

    def test_un_portal_viejo_y_la_paleta_de_un_escritorio_oscuro(self):
        portal = Portal(self.bus, ["Read"], acento=(0.9, 0.2, 0.1))
        self.abre(entorno=SESION.entorno(oscuro=True))
        self.app.pulsa("check box", "Cifrar")
        self.acento()
        self.assertEqual(self.fondo(), (32, 35, 38))  # the desktop's own dark
        portal.esquema(2)
        self.claro()

    def test_un_portal_que_no_contesta(self):
        portal = Portal(self.bus, ["ReadOne", "Read"], contesta=False)
        antes = time.monotonic()
        self.abre()
        self.claro()
        self.assertLess(time.monotonic() - antes, 10)
        portal.esquema(1)
        self.oscuro()


if __name__ == "__main__":
    unittest.main()
