"""20,000 files through the window: saved, listed, searched, taken out a folder,
fifty single entries and everything; compared with the originals by `diff`. Not
in the default run: ORCALIN_ARBOL=<build tree> PYTHONPATH=recorrido, then run this"""

import os
import random
import subprocess
import unicodedata
import unittest

from caso import Caso
from huellas import diferencias, siembra
from pasosexplorador import PasosExplorador

FICHEROS = 20_000
POR_CARPETA = 100
SUELTOS = 50
UN_RATO = 600  # seconds
NOMBRES = ("foto {}.jpg", "año nuevo {}.txt", "旅行笔记 {}.md",
           unicodedata.normalize("NFD", "canción {}.mp3"))


def planta(raiz):
    """The tree; its single files as paths in the archive."""
    azar = random.Random(20_000)
    sueltos = []
    for i in range(FICHEROS):
        carpeta = raiz / f"carpeta {i // POR_CARPETA:03}"
        carpeta.mkdir(parents=True, exist_ok=True)
        fichero = carpeta / NOMBRES[i % len(NOMBRES)].format(f"{i:05}")
        fichero.write_bytes(azar.randbytes(azar.randrange(4000)))
        sueltos.append(fichero.relative_to(raiz.parent))
        if i % 200 == 0:
            (carpeta / f"enlace {i}").symlink_to(fichero.name)
            (carpeta / f"segundo nombre {i}").hardlink_to(fichero)
            (carpeta / f"vacía {i}").mkdir()
    siembra(os.fsencode(raiz / "raros"))
    return azar.sample(sueltos, SUELTOS)


class Aceptacion(PasosExplorador, Caso):
    def test_veinte_mil(self):
        raiz = self.casa / "todo"
        sueltos = planta(raiz)
        entradas = 1 + sum(len(c) + len(f) for _, c, f in os.walk(os.fsencode(raiz)))
        archivo = self.casa / "todo.okz"
        self.abre()
        self.suelta(raiz)
        self.guarda_en(archivo, "todo.okz")
        self.app.espera("push button", "Guardar otra cosa", UN_RATO)
        self.cierra()
        self.abre(archivo)
        self.lee(f"{entradas} elementos")
        print(f"\n{entradas} entries listed, {archivo.stat().st_size} bytes", flush=True)
        self.una_carpeta(raiz, entradas)
        self.sueltos(raiz, sueltos)
        self.todo(raiz)
        self.cierra()

    def una_carpeta(self, raiz, entradas):
        self.busca("todo/carpeta 017/", f"{POR_CARPETA} de {entradas}")
        self.escribe_en_busca("carpeta 017")
        self.pincha(self.fila("carpeta 017"))
        destino = self.saca("Recuperar este", "una carpeta")
        self.iguales(raiz / "carpeta 017", destino / "todo/carpeta 017")

    def sueltos(self, raiz, sueltos):
        self.pincha(self.fila("carpeta 017"), "ctrl")  # that one no more
        for ruta in sueltos:
            self.escribe_en_busca(ruta.stem[-5:])
            self.pincha(self.fila(ruta.name), "ctrl")
        destino = self.saca(f"Recuperar {SUELTOS}", "sueltos")
        for ruta in sueltos:
            self.assertEqual((destino / ruta).read_bytes(), (raiz.parent / ruta).read_bytes())
        sacados = [r for r in destino.rglob("*") if not r.is_dir()]
        self.assertEqual(len(sacados), SUELTOS)
        print(f"{len(sacados)} single files: identical", flush=True)

    def todo(self, raiz):
        destino = self.saca("Recuperar todo", "entero")
        self.iguales(raiz, destino / "todo")
        self.assertEqual(diferencias(raiz, destino / "todo"), [])

    def saca(self, boton, nombre):
        destino = self.casa / nombre
        destino.mkdir()
        self.recuperables(boton)
        self.recupera(boton, destino)
        self.recuperado(UN_RATO)
        self.app.pulsa("push button", "Volver")
        self.app.espera("push button", boton)
        return destino

    def iguales(self, una, otra):
        subprocess.run(["diff", "-r", "--no-dereference", una, otra], check=True)
        cuantos = sum(len(f) for _, _, f in os.walk(os.fsencode(otra)))
        print(f"diff -r «{una.name}» ({cuantos} files): no difference", flush=True)


if __name__ == "__main__":
    unittest.main()
