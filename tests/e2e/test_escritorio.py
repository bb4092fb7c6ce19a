"""What the application and the desktop have to say to each other."""

import os
import subprocess
import time

from buses import Avisos, Bus, Portal
from caso import SESION, Caso, persona
from instalado import YA, CasoInstalado, pon_guion
from visor import Visor

GESTOR = "org.freedesktop.FileManager1"
BOTON = "Ver en el Finder"
GUARDA = ("error \\n10/40 ficheros (25.0%), 7 MiB\\n", f"aguarda {YA}", "escribe-destino 333")


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
        YA.unlink(missing_ok=True)
        pon_guion(*guion)
        self.suelta(self.origen)
        self.guardados += 1
        self.guarda_en(self.casa / f"carta & <b>{self.guardados}.okz", f"{self.origen.name}.okz")
        self.app.espera("push button", "Cancelar")
        self.app.espera_delante()

    def espera_avisos(self, cuantos):
        persona.hasta(lambda: self.avisos.ala_vista() == cuantos, f"{cuantos} avisos")

    def test_el_final_se_avisa_a_quien_no_mira(self):
        self.guarda(*GUARDA)
        YA.touch()
        self.app.espera("push button", BOTON)
        for guion, titulo, texto in (
                (GUARDA, "Guardado en «carta & <b>2.okz»",
                 "1 kB  →  333 bytes\nahorras 667 bytes · 66% menos"),
                ((*GUARDA[:2], r"error Error: no & <b>cabe\n", "sale 1"),
                 "No se pudo guardar", "no & <b>cabe")):
            self.app.pulsa("push button", "Guardar otra cosa")
            self.guarda(*guion)
            self.assertEqual(self.avisos.ala_vista(), 0)  # nothing was said in front
            self.app.minimiza()
            YA.touch()
            self.espera_avisos(1)
            self.avisos.contesta()
            self.app.espera_delante()
            self.espera_avisos(0)
            self.assertEqual(self.avisos.ultimo(), ("Orcalin", titulo, texto))

    def test_el_final_se_avisa_aunque_se_mire_si_la_pantalla_ya_no_esta(self):
        self.guarda(*GUARDA)
        otro = self.casa / "otro.okz"
        otro.touch()
        self.entrega(otro)
        self.app.espera("push button", "Guardar algo")
        self.app.espera_delante()
        YA.touch()
        self.espera_avisos(1)
        self.avisos.retira()
        self.espera_avisos(0)
        self.assertEqual(self.avisos.ultimo()[1], "Guardado en «carta & <b>1.okz»")
        self.assertEqual((self.casa / "carta & <b>1.okz").stat().st_size, 333)

    def test_el_progreso_en_la_barra_de_tareas(self):
        dichas = self.bus.oye("com.canonical.Unity.LauncherEntry", "Update")
        avance = [f"error \\n{n}/400 ficheros ({n / 4}%), 7 MiB\\n" for n in range(1, 301)]
        pausas = ["espera 5"] * len(avance)
        self.guarda(*(linea for par in zip(avance, pausas) for linea in par), f"aguarda {YA}")
        persona.hasta(lambda: dichas and dichas[-1][1] == {"progress": 0.75,
                                                           "progress-visible": True}, "el avance")
        self.assertEqual({uri for uri, _ in dichas}, {"application://es.orcalin.Orcalin.desktop"})
        partes = [datos["progress"] for _, datos in dichas]
        self.assertEqual(partes, sorted(partes))
        self.assertTrue(5 <= len(partes) <= 40, len(partes))
        self.cierra()
        persona.hasta(lambda: not dichas[-1][1]["progress-visible"], "la barra retirada al salir")


class Revelar(CasoInstalado):
    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)
        self.carpeta = self.casa / "con ñ y espacio"
        self.carpeta.mkdir()
        (self.carpeta / "antes.txt").touch()
        self.entorno = SESION.entorno()
        self.visor = Visor(self.entorno, "inode/directory")

    def escribe(self, nombre, texto):
        fichero = self.casa / nombre
        fichero.parent.mkdir(parents=True, exist_ok=True)
        fichero.write_text(texto)
        return fichero

    def gestor(self, orden):
        """The program that the bus starts for who asks for the file manager."""
        self.escribe(f".local/share/dbus-1/services/{GESTOR}.service",
                     f"[D-BUS Service]\nName={GESTOR}\nExec={orden}\n")
        self.bus.al_bus("ReloadConfig")

    def guardado(self):
        origen = self.casa / "carta.txt"
        origen.write_bytes(bytes(1000))
        pon_guion("escribe-destino 333")
        self.abre_instalada(entorno=self.entorno)
        self.suelta(origen)
        self.guarda_en(self.carpeta / "el archivo.okz", "carta.txt.okz")
        self.app.espera("push button", BOTON)

    def test_un_gestor_de_verdad_lo_ensena_elegido(self):
        self.gestor("/usr/bin/Thunar --gapplication-service")
        self.guardado()
        self.bus.al_bus("StartServiceByName", "(su)", GESTOR, 0)
        self.addCleanup(subprocess.run, ["thunar", "--quit"], check=False)
        self.app.pulsa("push button", BOTON)
        thunar = self.bus.proceso_de(GESTOR)

        def elegido():
            """Its icons have no names on the bus; its status bar names what is selected."""
            return any(nodo.get_name().startswith('"el archivo.okz"')
                       for nodo in persona.todos(persona.raiz_de(thunar))
                       if nodo.get_role_name() == "status bar")
        persona.hasta(elegido, "el archivo elegido")
        self.assertIsNone(self.visor.toma())

    def test_uno_que_se_cuelga_al_arrancar_o_al_contestar(self):
        self.gestor("/bin/sleep 60")
        self.guardado()
        self.ensena_la_carpeta()
        pedidos = []
        self.bus.ofrece(GESTOR, f"/{GESTOR.replace('.', '/')}",
                        f"<node><interface name='{GESTOR}'><method name='ShowItems'>"
                        "<arg type='as' direction='in'/><arg type='s' direction='in'/>"
                        "</method></interface></node>", lambda *pedido: pedidos.append(pedido))
        self.ensena_la_carpeta()
        uri = (self.carpeta / "el archivo.okz").as_uri()
        self.assertEqual(pedidos[-1], ("ShowItems", ([uri], "")))

    def test_nada_lo_abre_ni_lo_ensena(self):
        self.gestor("/bin/false")
        self.escribe("bin/xdg-open", "#!/bin/sh\nexit 3\n").chmod(0o755)
        pon_guion(r"salida -0644 1 a.txt\n")
        self.entorno["PATH"] = f"{self.casa}/bin:/usr/bin:/bin"
        self.abre_instalada(self.escribe("x.okz", ""), entorno=self.entorno)
        self.lee("1 elementos")
        pon_guion("crea-entrada hola")
        persona.teclas("Down", "Return")
        self.lee("No hay con qué abrir «a.txt».")

    def ensena_la_carpeta(self):
        antes = time.monotonic()
        self.app.pulsa("push button", BOTON)
        self.viva()
        carpeta, _ = persona.hasta(self.visor.toma, "la carpeta", 10)
        self.assertGreater(time.monotonic() - antes, 1.5)
        self.assertEqual(os.fsdecode(carpeta).rstrip("/"), str(self.carpeta))


RAROS = ["n" * 249 + "ñ.txt", "מסמך שלום.txt", "ملف رقم ٣.pdf", "🎉 fiesta.jpg", "cafe\u0301.txt",
         "dos\nlíneas.txt"]


class Local(Caso):
    """The user's numbers, scale and names; the words are ours."""

    escala = 2

    def encogida(self, *ficheros):
        """The smallest window, twice as large."""
        self.abre(*ficheros, entorno=SESION.entorno(escala=2, local="ar_EG"))
        marco = self.app.espera("frame", "orcalin")
        alto = persona.caja(marco)[3]
        subprocess.run(["xdotool", "windowsize", self.app.ventana(), "9", "9"], check=True)
        persona.hasta(lambda: persona.caja(marco)[3] < alto, "la ventana encogida")

    def test_todo_cabe_en_la_ventana_mas_pequena(self):
        ficheros = [self.casa / nombre for nombre in RAROS]
        for fichero in ficheros:
            fichero.write_bytes(bytes(1_234_567))
        archivo = self.casa / "archivo.okz"
        self.comprime(ficheros, archivo)
        self.encogida()
        self.suelta(*ficheros)
        for casilla in ("Comprimir al máximo", "Cifrar"):
            self.app.pulsa("check box", casilla)
        self.app.espera("password text", "Contraseña")
        self.lee("6 archivos · ٧٫٤ MB")
        self.accesible()
        self.cierra()
        self.encogida(archivo)
        for nombre in RAROS:
            self.app.espera("list item", nombre.replace("\n", "\\x0a") + ", archivo, ١٫٢ MB")
        self.accesible()
        self.app.pulsa("push button", "Recuperar todo")
        self.renuncia("¿Dónde dejo todo el contenido?", "Directorio:")


class Apariencia(Caso):
    def setUp(self):
        super().setUp()
        self.bus = con_bus(self)

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
