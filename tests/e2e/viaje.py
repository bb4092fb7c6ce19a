"""The long way there and back: gigabytes of every kind, and trees of your own,
saved through the window, given up at a random moment, saved again, opened, one
file looked at, everything taken out and compared. Needs room for three times as
much where temporary files go. Not part of the tests: takes its time.

    PYTHONPATH=recorrido /usr/bin/python3 tests/e2e/viaje.py --arbol BUILD [--gigas 10] [TREE…]
"""

import argparse
import contextlib
import os
import random
import shutil
import subprocess
import sys
import time
from pathlib import Path

from huellas import diferencias, siembra
from pasosexplorador import PasosExplorador
from sesion import Sesion
from visor import Visor

PACIENCIA = 7200  # seconds for one job
MEBI = 1 << 20
# What a person's disk is full of, a gigabyte of it: ending, MiB each, how many.
MEDIOS = (("mp4", 700, 1), ("jpg", 4, 40), ("mp3", 8, 10), ("zip", 60, 1))
REALES = ("/usr/include", "/usr/share/doc", "/usr/lib/x86_64-linux-gnu")
REAL_POR_GIGA = 3 * MEBI  # of each: it is a high level, and takes its time over it
MENUDOS_POR_GIGA = 2000
TOPE_VENTANA, TOPE_MOTOR = 300, 700  # MiB
TOPE_RESPUESTA = 2  # seconds more than another program of the session takes


def planta(raiz, gigas):
    """The mixture; returns the file to look at."""
    for giga, (fin, mebis, cuantos) in ((g, m) for g in range(gigas) for m in MEDIOS):
        carpeta = raiz / "medios" / f"{giga} {fin}"
        carpeta.mkdir(parents=True)
        for i in range(cuantos):
            with open(carpeta / f"{i:02}.{fin}", "wb") as medio:
                for _ in range(mebis):
                    medio.write(os.urandom(MEBI))
    for real in REALES:
        copia(Path(real), raiz / "reales" / Path(real).name, gigas * REAL_POR_GIGA)
    for i in range(gigas * MENUDOS_POR_GIGA):
        carpeta = raiz / f"menudos/{i // 500:03}"
        carpeta.mkdir(parents=True, exist_ok=True)
        menudo = carpeta / f"año {i:05}.txt"
        menudo.write_text(f"el menudo {i}\n" * random.randrange(60))
        if i % 100 == 0:
            (carpeta / f"enlace {i}").symlink_to(menudo.name)
            (carpeta / f"otro nombre {i}").hardlink_to(menudo)
            (carpeta / f"vacía {i}").mkdir()
    with open(raiz / "disco.img", "wb") as hueco:
        for isla in range(gigas):
            hueco.seek(isla * 200 * MEBI)
            hueco.write(os.urandom(MEBI))
        hueco.truncate(gigas * 200 * MEBI)
    siembra(os.fsencode(raiz / "raros"))
    return menudo


def copia(de, a, tope):
    """Real files, as many as fit, and where they were."""
    for carpeta, _, ficheros in os.walk(de):
        for fichero in sorted(ficheros):
            origen = Path(carpeta) / fichero
            if origen.is_symlink() or origen.stat().st_size > tope:
                continue
            tope -= origen.stat().st_size
            destino = a / origen.relative_to(de)
            destino.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(origen, destino)


def memoria(pid):
    """The most MiB that a process has had; 0 if it is gone."""
    with contextlib.suppress(OSError, IndexError):
        estado = Path(f"/proc/{pid}/status").read_text(encoding="utf-8")
        return int(estado.partition("VmHWM:")[2].split()[0]) // 1024
    return 0


class Viaje(PasosExplorador):
    def __init__(self, *todo):
        super().__init__(*todo)
        self.archivo = self.casa / "viaje.okz"
        self.principio = time.monotonic()
        self.faltas = []
        self._de_nuevo()

    def _de_nuevo(self):
        self.respuesta = self.otra = self.motor = 0

    def dice(self, texto):
        print(f"{time.monotonic() - self.principio:6.0f} s  {texto}", flush=True)

    def vigila(self, condicion, que):
        """Waits for it, and watches how the window and its engine do meanwhile."""
        pid = self.app.proceso.pid
        def mira():
            antes = time.monotonic()
            visto = condicion()
            self.respuesta = max(self.respuesta, time.monotonic() - antes)
            antes = time.monotonic()
            subprocess.run(["xdotool", "get_desktop"], capture_output=True, check=True)
            self.otra = max(self.otra, time.monotonic() - antes)
            with contextlib.suppress(OSError):
                for hijos in Path(f"/proc/{pid}/task").glob("*/children"):
                    self.motor = max(self.motor, 0, *map(memoria, hijos.read_text().split()))
            return visto
        antes = time.monotonic()
        visto = self.persona.hasta(mira, que, PACIENCIA)
        self.dice(f"{que}: {time.monotonic() - antes:.0f} s; the window answered within "
                  f"{self.respuesta:.2f} s (another program: {self.otra:.2f}) and took "
                  f"{memoria(pid)} MiB, the engine {self.motor}")
        if self.respuesta > TOPE_RESPUESTA + self.otra or memoria(pid) > TOPE_VENTANA:
            self.faltas.append(f"{que}: the window suffers")
        if self.motor > TOPE_MOTOR:
            self.faltas.append(f"{que}: the engine takes too much")
        self._de_nuevo()
        return visto

    def por_ciento(self):
        barra = self.app.busca("progress bar")
        dicho = barra.get_description().partition(" %") if barra else ("", "", "")
        return int(dicho[0]) if dicho[1] else 0

    def se_arrepiente(self, propuesto):
        self.guarda_en(self.archivo, propuesto)
        cuando = random.randrange(1, 90)
        self.vigila(lambda: self.por_ciento() >= cuando, f"saving, up to {cuando} %")
        self.app.pulsa("push button", "Cancelar")
        antes = time.monotonic()
        self.app.espera("push button", "Elegir qué guardar")
        vista = time.monotonic() - antes
        self.lee("guardado cancelado")
        self.app.pulsa("push button", "Volver")
        self.app.espera("push button", "Elegir qué guardar")
        restos = [*self.casa.glob("*okz*"), *self.casa.glob(".orcalin*"), *self.sesion.tmp.iterdir()]
        self.faltas += [f"left behind: {resto}" for resto in restos]
        self.dice(f"cancelled: drop area back after {vista:.1f} s, {len(restos)} files left behind")

    def abre_y_mira(self, originales, nota, visor):
        self.app.pulsa("push button", "Guardar otra cosa")
        self.suelta(self.archivo)
        cuantos = sum(1 + sum(len(c) + len(f) for _, c, f in os.walk(os.fsencode(original)))
                      for original in originales)
        self.vigila(lambda: f"{cuantos} elementos" in self.app.textos(),
                    f"listing {cuantos} entries of {self.archivo.stat().st_size} bytes")
        self.escribe_en_busca(nota.stem[-5:] + ".txt")
        self.abre_fila(self.fila(nota.name))
        copia_de, _ = self.vigila(visor.toma, "looking at one of them")
        assert Path(os.fsdecode(copia_de)).read_bytes() == nota.read_bytes()

    def saca(self):
        destino = self.casa / "sacado"
        destino.mkdir()
        self.recupera("Recuperar todo", destino)
        self.vigila(lambda: "Recuperado" in self.app.textos(), "taking everything out")
        return destino

    def corre(self, originales, nota):
        entorno = self.sesion.entorno()
        visor = Visor(entorno)
        self.abre(entorno=entorno)
        propuesto = "mezcla.okz" if len(originales) == 1 else "Archivo.okz"
        self.suelta(*originales)
        self.se_arrepiente(propuesto)
        self.guarda_en(self.archivo, propuesto)
        self.vigila(lambda: self.app.busca("push button", "Guardar otra cosa"), "saving")
        self.abre_y_mira(originales, nota, visor)
        destino = self.saca()
        self.cierra()
        for original in originales:
            self.faltas += diferencias(original, destino / original.name)
        disco = (destino / "mezcla/disco.img").stat()
        if disco.st_blocks * 512 > disco.st_size // 2:
            self.faltas.append("disco.img: its holes are filled")
        self.dice(f"compared: contents, modes, times and links of both: {len(self.faltas)} faults")
        print("".join(f"  {linea}\n" for linea in self.faltas), end="")
        return not self.faltas


def main():
    opciones = argparse.ArgumentParser(description=__doc__.split("\n\n", 1)[0])
    opciones.add_argument("--arbol", required=True, help="the build tree")
    opciones.add_argument("--gigas", type=int, default=10, help="of what the command makes itself")
    opciones.add_argument("arboles", nargs="*", type=Path, metavar="TREE")
    dado = opciones.parse_args()
    sesion = Sesion(alto=1300)
    try:
        import persona  # only now is there a bus to talk to

        viaje = Viaje(persona, sesion, dado.arbol)
        nota = planta(sesion.casa / "mezcla", dado.gigas)
        viaje.dice(f"planted {dado.gigas} GB")
        return 0 if viaje.corre([sesion.casa / "mezcla", *map(Path.resolve, dado.arboles)],
                                nota) else 1
    finally:
        sesion.cierra()


if __name__ == "__main__":
    sys.exit(main())
