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


class Guardado(Caso):
    def ida_y_vuelta(self, originales, propuesto, cifrado):
        """Through the window, back with the engine, and the same by name, content,
        mode, time and link."""
        archivo = self.casa / f"{len(os.listdir(self.casa))}.okz"
        self.suelta(*originales, por_el_borde=cifrado)
        self.guarda_en(archivo, propuesto)
        self.app.espera("push button", "Guardar otra cosa", 60)
        self.assertEqual(list(SESION.tmp.glob("okz-*")), [])
        clave = SESION.tmp / "clave"
        clave.write_text(CLAVE)
        sacado = archivo.with_suffix(".sacado")
        con_clave = ["--password-file", clave] if cifrado else []
        subprocess.run([MOTOR, "extract", archivo, "-o", sacado, *con_clave],
                       check=True, capture_output=True)
        self.assertEqual(sorted(os.listdir(os.fsencode(sacado))),
                         sorted(os.path.basename(original) for original in originales))
        for original in originales:
            self.assertEqual(diferencias(original, os.path.join(
                os.fsencode(sacado), os.path.basename(original))), [])
        self.app.pulsa("push button", "Guardar otra cosa")

    def test_lo_que_se_guarda_vuelve_igual(self):
        raiz = os.fsencode(self.casa) + b"/\xc3\xa1rbol raro"
        siembra(raiz)
        self.abre()
        varios = (*RAROS, b"carpetas", b"enlace roto", b"solo lectura", b"carpeta vac\xc3\xada")
        for cifrado in (False, True):
            if cifrado:
                self.cifra(CLAVE)
            for originales, propuesto in (
                    ([raiz], "árbol raro.okz"),
                    ([raiz + b"/" + nombre for nombre in varios], "Archivo.okz"),
                    ([raiz + b"/no es UTF-8 \xe1\xff"], "no es UTF-8 \ufffd\ufffd.okz")):
                self.ida_y_vuelta(originales, propuesto, cifrado)
        self.cierra()


class Salida(Caso):
    """Leaving while the engine is at work."""

    def test_no_queda_nada_a_medias(self):
        for como in (lambda: self.app.pulsa("push button", "Salir"),
                     lambda: self.app.proceso.send_signal(signal.SIGTERM)):
            self.trabaja()
            motores = self.motores()
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
            como()
            self.acabada(*self.app.acaba())
            self.assertEqual([motor.exists() for motor in motores], [False])
            self.assertEqual(self.restos(), [])

    def trabaja(self):
        self.abre()
        self.suelta(GRANDE)
        self.cifra(CLAVE)
        self.app.pulsa("check box", "Comprimir al máximo")
        self.guarda_en(self.casa / "grande.okz", "c++.okz")
        self.app.lee(lambda t: " archivos" in t and " de " in t, "la cuenta", 60)
        self.assertEqual(len(list(SESION.tmp.glob("okz-*"))), 1)


if __name__ == "__main__":
    unittest.main()
