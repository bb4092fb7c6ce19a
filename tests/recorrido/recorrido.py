"""The tour: a person's way through the application, every panel on it checked
and photographed. Ends with a non-zero status if a step did not show what it
should."""

import argparse
import subprocess
import sys
from pathlib import Path

from recorrido_explorador import TramoExplorador
from sesion import Sesion
from visor import Visor

VARIANTES = {
    "claro": {},
    "oscuro": {"oscuro": True},
    "doble": {"escala": 2},
}


class Recorrido(TramoExplorador):
    def __init__(self, sesion, arbol, fotos, variante):
        import accesible  # only now is there a bus to talk to
        import persona

        super().__init__(persona, sesion, arbol)
        self.accesible = accesible
        self.fotos = Path(fotos)
        self.variante = variante
        self.escala = VARIANTES[variante].get("escala", 1)
        self.fotos.mkdir(parents=True, exist_ok=True)

    # What a step is made of.

    def foto(self, nombre, anuncio=""):
        """A panel is as it should be: a picture of it. `anuncio` is what a
        screen reader must say of it by itself."""
        self.app.foto(self.fotos / f"{nombre}-{self.variante}.png")
        faltas = self.accesible.faltas(self.app.raiz)
        assert not faltas, f"{nombre}: {'; '.join(faltas)}"
        self.app.anuncia(lambda dicho: anuncio in dicho, anuncio)

    def abre_aplicacion(self, *ficheros):
        entorno = self.sesion.entorno(local="es_ES", **VARIANTES[self.variante])
        # With a key that is remembered, the engine is done before it can be looked at.
        entorno["ORCALIN_SIN_LLAVERO"] = "1"
        self.visor = Visor(entorno)
        self.abre(*ficheros, entorno=entorno)

    # The steps.

    def preparativos(self):
        carpeta = self.casa / "fotos del viaje"
        if carpeta.exists():
            return
        carpeta.mkdir()
        for i in range(40):
            (carpeta / f"dibujo {i}.svg").write_text(f"<svg><path d='M {i} 0'/></svg>\n" * 2000)
        (self.casa / "cartas.txt").write_text("Querida amiga:\n" * 3000)
        (self.casa / "presupuesto de la obra con un nombre larguísimo que no cabe entero en "
         "ninguna ventana de un tamaño razonable.ods").write_bytes(bytes(1234567))

    def vacia(self):
        self.abre_aplicacion()
        self.lee("Arrastra aquí lo que quieras guardar")
        self.lee("una carpeta o unos archivos")
        guardar = self.app.espera("push button", "Guardar")
        assert not self.app.activo(guardar), "«Guardar» está activo sin nada que guardar"
        self.foto("1-vacia")

    def encima(self):
        arrastre = self.arrastra(self.casa / "fotos del viaje")
        self.foto("2-encima")
        assert arrastre.suelta() == "copy"

    def uno(self):
        self.lee("fotos del viaje")
        self.app.lee(lambda t: t.endswith(" MB"), "el tamaño de la carpeta")
        self.app.espera("image", "carpeta")
        self.foto("3-uno", "fotos del viaje, carpeta, ")

    def varios(self):
        self.suelta(*sorted(self.casa.glob("[cfp]*")))
        self.app.lee(lambda t: t.startswith("3 archivos · ") and t.endswith("B"), "la cabecera")
        for nombre in ("cartas.txt", "fotos del viaje"):
            self.lee(nombre)
        self.app.espera("image", "archivo")
        self.foto("4-varios", "3 archivos · ")

    def opciones(self):
        self.app.pulsa("check box", "Comprimir al máximo")
        self.lee("Ocupa bastante menos y tarda unas quince veces más.")
        self.app.pulsa("check box", "Cifrar")
        self.lee("Sin esta contraseña no hay forma de recuperar lo guardado. "
                 "No se puede restablecer.")
        guardar = self.app.espera("push button", "Guardar")
        assert not self.app.activo(guardar), "«Guardar» está activo sin contraseña"
        self.app.espera_foco(self.app.espera("password text", "Contraseña"))
        self.persona.teclea("una araña negra")
        self.persona.hasta(lambda: self.app.activo(guardar), "«Guardar» activo")
        self.foto("5-opciones")

    def trabajo(self):
        self.suelta("/usr/include/c++")
        self.app.pulsa("check box", "Comprimir al máximo")
        self.guarda_en(self.casa / "cabeceras.okz", "c++.okz")
        self.app.lee(lambda t: " archivos · ~" in t, "la cuenta y el tiempo que falta", 60)
        self.lee("c++")
        barra = self.app.espera("progress bar", "c++")
        self.persona.hasta(lambda: 30 <= self.lleno(barra) < 100, "la barra a medias")
        self.foto("6-trabajo", "c++, ")
        self.persona.teclas("ctrl+q")
        self.app.espera("dialog", "¿Salir sin terminar de guardar?")
        self.foto("21-salida", "¿Salir sin terminar de guardar?")
        self.persona.teclas("Escape")
        self.persona.hasta(lambda: self.app.busca("dialog") is None, "la pregunta retirada")

    @staticmethod
    def lleno(barra):
        barra.clear_cache()
        tanto, hay, _ = barra.get_description().partition(" %")
        return int(tanto) if hay else 0

    def cancelado(self):
        self.app.pulsa("push button", "Cancelar")
        self.lee("guardado cancelado")
        restos = [r.name for r in self.casa.iterdir() if "okz" in r.name]
        assert not restos, f"el guardado cancelado dejó {restos}"
        assert not list(self.sesion.tmp.glob("okz-*")), "queda un fichero con la contraseña"
        self.app.pulsa("push button", "Volver")
        self.lee("c++")

    def resultado(self):
        self.suelta(self.casa / "fotos del viaje")
        archivo = self.casa / "fotos.okz"
        self.guarda_en(archivo, "fotos del viaje.okz")
        self.app.lee(lambda t: t.startswith("ahorras ") and t.endswith("% menos"), "el ahorro", 60)
        self.app.lee(lambda t: "  →  " in t, "los tamaños")
        self.app.lee(lambda t: t.startswith("en ") and t.endswith(" s"), "la duración")
        self.app.espera("push button", "Ver en el Finder")
        self.app.espera("image", "Guardado")
        self.foto("7-resultado", "Guardado: de ")
        assert archivo.read_bytes().startswith(b"age-encryption.org/v1\n"), "no está cifrado"
        self.app.pulsa("push button", "Guardar otra cosa")
        self.lee("Arrastra aquí lo que quieras guardar")

    def fallo(self):
        efimero = self.casa / "efímero.txt"
        efimero.write_text("adiós")
        self.suelta(efimero)
        efimero.unlink()
        self.guarda_en(self.casa / "nada.okz", "efímero.txt.okz")
        self.app.espera("push button", "Volver")
        self.app.lee(lambda t: "efímero.txt" in t, "el motivo del fallo")
        self.app.espera("image", "Fallo")
        self.foto("8-fallo", "Fallo: ")
        self.app.pulsa("push button", "Volver")
        self.lee("efímero.txt")
        self.cierra()

    PASOS = (preparativos, vacia, encima, uno, varios, opciones, trabajo, cancelado, resultado,
             fallo, *TramoExplorador.PASOS_DEL_EXPLORADOR)

    def anda(self):
        for paso in self.PASOS:
            print(f"  {self.variante}: {paso.__name__}", flush=True)
            paso(self)


def recorre(arbol, fotos, variante):
    sesion = Sesion(alto=1300)
    recorrido = Recorrido(sesion, arbol, fotos, variante)
    try:
        recorrido.anda()
        return 0
    except (AssertionError, subprocess.SubprocessError) as error:
        subprocess.run(["import", "-window", "root", f"{fotos}/fallo-{variante}.png"],
                       check=False)
        print(f"El recorrido se paró: {error}", file=sys.stderr)
        return 1
    finally:
        if recorrido.app and recorrido.app.proceso.poll() is None:
            recorrido.app.proceso.kill()
        sesion.cierra()


def main():
    opciones = argparse.ArgumentParser(description=__doc__)
    opciones.add_argument("--arbol", required=True, help="the build tree")
    opciones.add_argument("--fotos", required=True, help="where the pictures go")
    opciones.add_argument("--variante", choices=VARIANTES, help="one only, not all")
    dado = opciones.parse_args()
    if dado.variante:
        return recorre(dado.arbol, dado.fotos, dado.variante)
    # A process knows one accessibility bus in its life: one process for each.
    for variante in VARIANTES:
        hijo = subprocess.run([sys.executable, "-W", "ignore", __file__, "--arbol", dado.arbol,
                               "--fotos", dado.fotos, "--variante", variante], check=False)
        if hijo.returncode:
            return hijo.returncode
    print(f"Las fotos están en {dado.fotos}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
