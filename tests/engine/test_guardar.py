"""Making archives: names, progress, and everything that can go wrong."""

import os
import pathlib
import socket
import unittest

from motor import Caso, PROGRESO, desordenado

MEBI = 1024 * 1024


class Nombres(Caso):
    def test_no_se_pisan(self):
        for carpeta in ("uno", "dos", "tres"):
            (self.d / carpeta / "fotos.d").mkdir(parents=True)
            (self.d / carpeta / "a.txt").write_text(carpeta)
        self.comprime(*(self.d / c / n for c in ("uno", "dos", "tres") for n in ("fotos.d", "a.txt")))
        salida = self.extrae()
        self.assertEqual([(salida / f"a{n}.txt").read_text() for n in ("", " (2)", " (3)")],
                         ["uno", "dos", "tres"])
        self.assertEqual(sorted(p.name for p in salida.iterdir() if p.is_dir()),
                         ["fotos.d", "fotos.d (2)", "fotos.d (3)"])

    def test_punto_y_puntos(self):
        (self.d / "padre/hija").mkdir(parents=True)
        (self.d / "padre/f").touch()
        for origen, nombre in ((".", "hija"), ("..", "padre"), ("./", "hija"), ("../hija/.", "hija")):
            self.comprime(origen, cwd=self.d / "padre/hija")
            self.assertEqual(next(iter(self.lista())), nombre)

    def test_un_enlace_no_se_sigue(self):
        (self.d / "carpeta").mkdir()
        (self.d / "enlace").symlink_to("carpeta")
        self.comprime(f"{self.d}/enlace/")
        self.assertEqual(os.readlink(self.extrae() / "enlace"), "carpeta")

    def test_la_lista_se_lee_linea_a_linea(self):
        carpeta = self.d / " c"
        carpeta.mkdir()
        raros = {"a\nb": r"a\x0ab", "\\n": r"\\n", "\x7f\u0085\u2028\u2029": None, "ñ": "ñ",
                 os.fsdecode(b"\xff\xc0\xaf\xed\xa0\x80"): r"\xff\xc0\xaf\xed\xa0\x80"}
        for nombre in raros:
            (carpeta / nombre).write_text(nombre.encode(errors="replace").decode())
        self.comprime(carpeta)
        lista = self.lista()
        self.assertEqual(list(lista)[0], r"\x20c")
        self.assertEqual(len(lista), len(raros) + 1)
        for escrito in filter(None, raros.values()):
            self.assertIn(r"\x20c/" + escrito, lista)
        for escrito, (tipo, _, _) in lista.items():
            salida = self.extrae("--file", escrito, a="uno a uno")
        self.assertEqual({p.name for p in (salida / " c").iterdir()}, set(raros))

    def test_lo_que_no_se_guarda(self):
        os.mkfifo(self.d / "tubo")
        enchufe = socket.socket(socket.AF_UNIX)
        enchufe.bind(os.fspath(self.d / "enchufe Error"))
        self.addCleanup(enchufe.close)
        avisos = self.comprime(self.clave, self.d / "tubo", self.d / "enchufe Error").lineas
        self.assertEqual(len(avisos), 2)
        self.assertEqual(list(self.lista()), ["clave"])
        self.assertEqual(self.error("compress", self.d / "tubo", "-o", self.okz),
                         "no hay nada que guardar")
        self.assertEqual(list(self.lista()), ["clave"])

    def test_el_archivo_no_se_guarda_a_si_mismo(self):
        carpeta = self.d / "c"
        carpeta.mkdir()
        (carpeta / "f").write_bytes(desordenado(MEBI))
        self.okz = carpeta / "a.okz"
        for _ in range(2):
            self.comprime(carpeta)
            self.assertEqual(list(self.lista()), ["c", "c/f"])
        antes = self.okz.read_bytes()
        self.error("compress", self.okz, "-o", self.okz)
        self.assertEqual(self.okz.read_bytes(), antes)


class Progreso(Caso):
    def progreso(self, *origenes, nivel="1"):
        lineas = self.comprime(*origenes, "--progress", nivel=nivel).lineas
        return [PROGRESO.match(l).groups() for l in lineas]

    def test_un_fichero_grande_avanza(self):
        fichero = self.d / "f"
        fichero.write_bytes(desordenado(5 * MEBI))
        pasos = self.progreso(fichero, nivel="19")
        porcentajes = [float(p) for _, _, p, _ in pasos]
        self.assertEqual(porcentajes, sorted(porcentajes))
        self.assertGreater(len({p for p in porcentajes if 0 < p < 100}), 3)
        self.assertEqual(pasos[-1], ("1", "1", "100.0", "5"))

    def test_solo_cuentan_los_ficheros(self):
        (self.d / "c/vacía").mkdir(parents=True)
        self.assertEqual(self.progreso(self.d / "c")[-1], ("0", "0", "100.0", "0"))
        (self.d / "c/vacío").touch()
        os.symlink("x", self.d / "c/enlace")
        os.link(self.clave, self.d / "c/duro")
        self.assertEqual(self.progreso(self.d / "c", self.clave)[-1], ("4", "4", "100.0", "0"))

    def test_callado_si_no_se_pide(self):
        self.assertEqual(self.comprime(self.clave).lineas, [])


# In MiB, for any number of cores: each may have 16 in hand.
GRANDE = 16 * (os.cpu_count() + 4)


class Faltas(Caso):
    def setUp(self):
        super().setUp()
        self.c = self.d / "c"
        self.c.mkdir()
        self.grande = self.c / "1"
        self.grande.write_bytes(desordenado(5 * MEBI))

    def arranca_despacio(self):
        """Reading goes ahead of compressing, but not as far as this file goes."""
        self.antes = desordenado(GRANDE * MEBI // 2).hex().encode()
        self.grande.write_bytes(self.antes)
        return self.arranca("compress", self.c, "-o", self.okz, "--level", "5")

    def test_ilegible(self):
        como = self.como_nadie()
        os.chmod(self.d, 0o777)
        (self.c / "cerrada").mkdir()
        (self.c / "cerrada/x").touch()
        (self.c / "contraseña Error").touch()
        os.chmod(self.c / "cerrada", 0)
        os.chmod(self.c / "contraseña Error", 0)
        mensaje = self.error("compress", self.c, "-o", self.okz, "--level", "1", **como)
        self.assertIn("2 elementos", mensaje)
        self.assertEqual(list(self.lista()), ["c", "c/1", "c/cerrada"])
        antes = self.okz.read_bytes()
        mensaje = self.error("compress", self.c / "contraseña Error", "-o", self.okz, **como)
        self.assertIn("permiso denegado", mensaje)
        self.assertEqual(self.okz.read_bytes(), antes)
        os.chmod(self.d, 0o555)
        self.assertIn("permiso denegado", self.error("compress", self.clave, "-o", self.okz, **como))

    def test_desaparece(self):
        (self.c / "2").touch()
        (self.c / "3").touch()
        p = self.arranca_despacio()
        (self.c / "2").unlink()
        r = self.termina(p, falla=True)
        self.assertRegex(r.lineas[-1], r"1 elemento .*c/2».*no existe")
        self.assertIn(f"3/3 ficheros (100.0%), {GRANDE} MiB", r.lineas)
        self.assertEqual(list(self.lista()), ["c", "c/1", "c/3"])

    def test_mengua(self):
        p = self.arranca_despacio()
        os.truncate(self.grande, MEBI)
        self.assertIn("menguado", self.termina(p, falla=True).lineas[-1])
        despues = (self.extrae() / "c/1").read_bytes()
        self.assertEqual(len(despues), len(self.antes))
        self.assertEqual(despues[:MEBI], self.antes[:MEBI])
        self.assertEqual(despues[-MEBI:], bytes(MEBI))

    def test_crece(self):
        p = self.arranca_despacio()
        with open(self.grande, "ab") as f:
            f.write(desordenado(5 * MEBI))
        r = self.termina(p, falla=False)
        self.assertEqual(r.lineas[-1], f"1/1 ficheros (100.0%), {GRANDE} MiB")
        self.assertEqual((self.extrae() / "c/1").read_bytes(), self.antes)

    def test_destino_imposible(self):
        self.error("compress", self.c, "-o", self.d / "no/existe/a.okz")
        self.error("compress", self.c, "-o", self.c)
        self.error("compress", self.d / "no existe", "-o", self.okz)
        self.error("compress", self.c, "-o", "/dev/null")
        self.assertTrue(pathlib.Path("/dev/null").is_char_device())
        self.assertFalse(self.okz.exists())

    def test_enlace_como_destino(self):
        self.okz.symlink_to("real.okz")
        self.comprime(self.clave)
        self.assertTrue(self.okz.is_symlink())
        self.assertEqual(list(self.lista()), ["clave"])


if __name__ == "__main__":
    unittest.main()
