"""Saving with the engine that the application brings."""

import os
import signal
import subprocess
import unittest
from pathlib import Path

from caso import ARBOL, SESION, Caso, persona
from huellas import RAROS, diferencias, siembra

MOTOR = Path(ARBOL) / "libexec/orcalin/orcalin"
CLAVE = "la araña, ç 1º"
GRANDE = "/usr/include/c++"
PREGUNTA = "¿Salir sin terminar de guardar?"


def entradas(original):
    return 1 + sum(len(carpetas) + len(ficheros) for _, carpetas, ficheros in os.walk(original))


class Guardado(Caso):
    def setUp(self):
        super().setUp()
        self.arbol_raro = os.fsencode(self.casa) + b"/\xc3\xa1rbol raro"
        siembra(self.arbol_raro)

    def guarda(self, destino, propuesto):
        self.guarda_en(destino, propuesto)
        self.app.espera("push button", "Guardar otra cosa", 60)
        self.assertEqual(list(SESION.tmp.glob("okz-*")), [])

    def saca(self, archivo, cifrado):
        """The folder with what the archive holds, and nothing else."""
        sacado = archivo.with_suffix(".sacado")
        orden = [MOTOR, "extract", archivo, "-o", sacado]
        if cifrado:
            clave = SESION.tmp / "clave"
            clave.write_text(CLAVE)
            orden += ["--password-file", clave]
        subprocess.run(orden, check=True, capture_output=True)
        return os.fsencode(sacado)

    def compara(self, originales, archivo, cifrado):
        sacado = self.saca(archivo, cifrado)
        self.assertEqual(sorted(os.listdir(sacado)),
                         sorted(os.path.basename(original) for original in originales))
        for original in originales:
            self.assertEqual(
                diferencias(original, sacado + b"/" + os.path.basename(original)), [])

    def leen_otros(self, archivo):
        """The names that a common archiver finds."""
        listado = subprocess.run(["bsdtar", "-tf", archivo], check=True, capture_output=True)
        return listado.stdout.splitlines()

    def ida_y_vuelta(self, originales, propuesto):
        """Without a password and then with one, in the same window."""
        self.abre()
        abierto = self.casa / "sin clave.okz"
        self.suelta(*originales)
        self.guarda(abierto, propuesto)
        self.compara(originales, abierto, cifrado=False)
        self.assertEqual(len(self.leen_otros(abierto)), sum(map(entradas, originales)))
        self.app.pulsa("push button", "Guardar otra cosa")
        cerrado = self.casa / "con clave.okz"
        self.suelta(*originales)
        self.cifra(CLAVE)
        self.guarda(cerrado, propuesto)
        self.compara(originales, cerrado, cifrado=True)
        self.cierra()

    def test_una_carpeta(self):
        self.ida_y_vuelta([self.arbol_raro], "árbol raro.okz")

    def test_varios_a_la_vez(self):
        nombres = (*RAROS, b"carpetas", b"enlace roto", b"solo lectura", b"carpeta vac\xc3\xada")
        self.ida_y_vuelta([self.arbol_raro + b"/" + nombre for nombre in nombres], "Archivo.okz")

    def test_uno_cuyo_nombre_no_es_texto(self):
        self.abre()
        original = self.arbol_raro + b"/no es UTF-8 \xe1\xff"
        self.suelta(original)
        self.lee("no es UTF-8 \ufffd\ufffd")
        archivo = self.casa / "uno.okz"
        self.guarda(archivo, "no es UTF-8 \ufffd\ufffd.okz")
        self.compara([original], archivo, cifrado=False)


class Salida(Caso):
    """Leaving while the engine is at work."""

    def trabajando(self):
        self.abre()
        self.suelta(GRANDE)
        self.cifra(CLAVE)
        self.app.pulsa("check box", "Comprimir al máximo")
        self.guarda_en(self.casa / "grande.okz", "c++.okz")
        self.app.lee(lambda t: " archivos" in t and " de " in t, "la cuenta", 60)
        self.assertEqual(len(list(SESION.tmp.glob("okz-*"))), 1)
        return self.motores()

    def sin_rastro(self, motores):
        self.acabada(*self.app.acaba())
        self.assertEqual([motor.exists() for motor in motores], [False])
        self.assertEqual(self.restos(), [])

    def test_la_sesion_pide_salir(self):
        motores = self.trabajando()
        self.app.proceso.send_signal(signal.SIGTERM)
        self.sin_rastro(motores)

    def test_salir_con_el_teclado_pregunta_antes(self):
        motores = self.trabajando()
        persona.teclas("ctrl+q")
        self.espera_panel(PREGUNTA)
        persona.hasta(lambda: self.con_foco() == ("push button", "Seguir guardando"),
                      "el foco en lo que no pierde nada")
        self.todo_con_nombre()
        persona.teclas("Escape")
        self.espera_sin_panel()
        self.assertEqual([motor.exists() for motor in motores], [True])
        persona.teclas("ctrl+q")
        self.espera_panel(PREGUNTA)
        self.app.pulsa("push button", "Salir")
        self.sin_rastro(motores)


if __name__ == "__main__":
    unittest.main()
