"""The way there and back with real trees: dropped on the application, saved,
extracted by the engine and compared. Not part of the tests: takes its time.

    PYTHONPATH=recorrido /usr/bin/python3 tests/e2e/grandes.py --arbol BUILD /usr/share/doc /usr/include
"""

import argparse
import os
import subprocess
import sys
import time

from huellas import diferencias, huella
from pasos import Pasos
from sesion import Sesion

PACIENCIA = 3600  # seconds for one job


def guarda(pasos, original):
    """Saves one tree through the window; returns the archive."""
    nombre = os.path.basename(original)
    archivo = pasos.casa / f"{nombre}.okz"
    pasos.suelta(original)
    pasos.lee(nombre)
    pasos.guarda_en(archivo, f"{nombre}.okz")
    pasos.app.espera("push button", "Guardar otra cosa", PACIENCIA)
    pasos.app.pulsa("push button", "Guardar otra cosa")
    return archivo


def compara(original, sacado):
    """What differs, as diff tells it and then as the modes and times do."""
    contenidos = subprocess.run(["diff", "-r", "--no-dereference", original, sacado],
                                capture_output=True, check=False)
    return [*contenidos.stdout.decode(errors="replace").splitlines(),
            *contenidos.stderr.decode(errors="replace").splitlines(),
            *diferencias(original, sacado)]


def ida_y_vuelta(pasos, original):
    inicio = time.monotonic()
    archivo = guarda(pasos, original)
    sacado = pasos.casa / "sacado"
    subprocess.run([pasos.arbol / "libexec/orcalin/orcalin", "extract", archivo, "-o", sacado],
                   check=True)
    distinto = compara(original, sacado / os.path.basename(original))
    print(f"{original}: {len(huella(original))} entradas, archivo de {archivo.stat().st_size} "
          f"bytes, {time.monotonic() - inicio:.0f} s; contenidos, modos, fechas y enlaces: "
          f"{len(distinto)} diferencias")
    print("".join(f"  {linea}\n" for linea in distinto), end="")
    pasos.sesion.vacia()
    return not distinto


def main():
    opciones = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    opciones.add_argument("--arbol", required=True, help="the build tree")
    opciones.add_argument("originales", nargs="+", type=os.path.realpath)
    dado = opciones.parse_args()
    sesion = Sesion(alto=1300)
    try:
        import persona  # only now is there a bus to talk to

        pasos = Pasos(persona, sesion, dado.arbol)
        pasos.abre()
        iguales = [ida_y_vuelta(pasos, original) for original in dado.originales]
        pasos.cierra()
        return 0 if all(iguales) else 1
    finally:
        sesion.cierra()


if __name__ == "__main__":
    sys.exit(main())
