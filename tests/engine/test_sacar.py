"""Reading archives: single entries, hostile ones, damaged ones."""

import io
import os
import shutil
import subprocess
import tarfile
import unittest

from motor import MEBI, MOTOR, Caso, desordenado, foto

FICHERO, CARPETA, ENLACE, DURO = tarfile.REGTYPE, tarfile.DIRTYPE, tarfile.SYMTYPE, tarfile.LNKTYPE


class UnaEntrada(Caso):
    def setUp(self):
        super().setUp()
        for ruta, contenido in (("sub/a", "contenido"), ("sub/honda/b", "hondo"),
                                ("subordinado", "otra cosa"), ("-guion", "guion")):
            self.pon(f"c/{ruta}", contenido)
        for otro in ("z1", "z2"):
            os.link(self.c / "sub/a", self.c / otro)
        self.comprime(self.c)

    def saca(self, entrada, a="salida"):
        salida = self.extrae("--file", entrada, a=a)
        return {os.fspath(p.relative_to(salida)) for p in salida.rglob("*") if p.is_file()}

    def test_fichero_carpeta_y_enlace_duro(self):
        self.assertEqual(self.saca("c/sub/a"), {"c/sub/a"})
        self.assertEqual(self.saca("c/sub", "otra"), {"c/sub/a", "c/sub/honda/b"})
        self.assertEqual(self.saca("c/-guion", "guion"), {"c/-guion"})
        self.assertEqual(self.lista()["c/z1"][0], "h")
        self.assertEqual(self.saca("c/z1", "duro"), {"c/z1"})
        self.assertEqual((self.d / "duro/c/z1").read_text(), "contenido")
        self.corre("compress", "-o", self.okz, "--", "-guion", cwd=self.c)
        self.assertEqual(self.saca("-guion", "suelto"), {"-guion"})

    def test_enlaces_duros_a_un_ausente(self):
        # Together in one folder, whose file stands outside it.
        afuera = self.pon("e/afuera", "contenido")
        (self.d / "e/dentro").mkdir()
        for n in "12":
            os.link(afuera, self.d / f"e/dentro/{n}")
        self.comprime(self.d / "e")
        self.assertEqual(self.saca("e/dentro"), {"e/dentro/1", "e/dentro/2"})
        dentro = self.salida / "e/dentro"
        self.assertEqual((dentro / "2").read_text(), "contenido")
        self.assertTrue(os.path.samefile(dentro / "1", dentro / "2"))

    def test_el_contenido_no_se_lee_dos_veces(self):
        # The first of two names has no room; the second must not be made of what is left.
        self.pon("salida/c/z1/ocupada")
        self.pon("salida/c/sub/a/ocupada")
        self.assertIn("no se pudieron sacar bien", self.error_al_sacar())
        z2 = self.salida / "c/z2"
        self.assertTrue(not z2.exists() or z2.read_text() == "contenido")

    def test_no_esta(self):
        for entrada in ("c/no", "c/su", "", "/c", "c/sub/a/b", "mal\\escrito",
                        "contraseña"):  # which may not pass for the request of one
            self.assertIn("no está en el archivo: «", self.error_al_sacar("--file", entrada))


class Hostiles(Caso):
    def setUp(self):
        super().setUp()
        self.secreto = self.pon("fuera/secreto", "intacto")
        self.fuera = self.secreto.parent
        self.salida.mkdir()

    def tar(self, *entradas):
        """Entries are (name, type, link target or content)."""
        memoria = io.BytesIO()
        with tarfile.open(fileobj=memoria, mode="w", format=tarfile.PAX_FORMAT) as t:
            for nombre, tipo, resto in (*entradas, ("bien", FICHERO, "bien")):
                e = tarfile.TarInfo(os.fspath(nombre))
                e.type = tipo
                datos = resto.encode() if tipo == FICHERO else b""
                e.size, e.linkname = len(datos), "" if datos else os.fspath(resto)
                t.addfile(e, io.BytesIO(datos))
        self.sh('zstd -qfo "$1"', self.d, input=memoria.getvalue())

    def test_ni_fuera_ni_dispositivos(self):
        l, x = [("l", ENLACE, self.fuera)], ("x", FICHERO, "mal")
        casos = [[(ruta, *x[1:])] for ruta in (self.fuera / "x", "../fuera/x", "a/../../fuera/x", "..", "./../x")]
        casos += [[("../fuera/d", CARPETA, "")], [("../fuera/l", ENLACE, "x")]]
        for destino in (self.fuera, "../fuera"):
            casos += [[("l", ENLACE, destino), por] for por in (
                ("l/x", FICHERO, "mal"), ("l/d/x", FICHERO, "mal"), ("l/secreto", ENLACE, "mal"))]
        casos += [l + [("h", DURO, destino)] for destino in (self.secreto, "../fuera/secreto", "l/secreto")]
        casos += [[("h", DURO, "b"), ("b", DURO, "h")]]
        casos += [[("h", tipo, "")] for tipo in (tarfile.CHRTYPE, tarfile.BLKTYPE, tarfile.FIFOTYPE)]
        for entradas in casos:
            self.rechaza(*entradas)
            self.assertFalse((self.salida / "h").exists(), entradas)

    def rechaza(self, *entradas):
        self.tar(*entradas)
        antes = foto(self.fuera), {p.name for p in self.d.iterdir()}
        self.error_al_sacar()
        self.assertEqual((foto(self.fuera), {p.name for p in self.d.iterdir()}), antes, entradas)
        self.assertEqual((self.salida / "bien").read_text(), "bien")

    def test_un_enlace_ya_estaba(self):
        (self.salida / "l").symlink_to(self.fuera)
        self.rechaza(("l/x", FICHERO, "mal"))
        os.link(self.secreto, self.salida / "duro")
        (self.salida / "blando").symlink_to(self.secreto)
        self.tar(("duro", FICHERO, "nuevo"), ("blando", FICHERO, "nuevo"), ("l", CARPETA, ""),
                 ("l/x", FICHERO, "nuevo"))
        self.extrae()
        self.assertEqual([p.name for p in self.fuera.iterdir()], ["secreto"])
        self.assertEqual(self.secreto.read_text(), "intacto")
        for nombre in ("duro", "blando", "l/x"):
            self.assertEqual((self.salida / nombre).read_text(), "nuevo")

    def test_nombres_en_la_lista(self):
        self.tar(("a\n-0644 1 falsa", FICHERO, "x"), ("\x1b[2J", FICHERO, "x"))
        self.assertEqual(list(self.lista()), [r"\x1b[2J", r"a\x0a-0644 1 falsa", "bien"])


class Danos(Caso):
    def test_ni_un_byte_cambiado_ni_un_corte_pasa(self):
        """Every byte in turn, every length; however it is made. What is not
        refused is right; what comes after the data is never needed."""
        fichero = self.pon("f", b"hola " * 20)
        for modo, tras in ((("--level", "1"), 48), (("--max",), 73), (self.en_clave, None)):
            self.comprime(fichero, *modo, nivel=None)
            bueno = self.okz.read_bytes()
            datos = int.from_bytes(bueno[-tras:8 - tras], "little") if tras else len(bueno)
            malos = [bueno[:i] + bytes([c ^ 0x10]) + bueno[i + 1:] for i, c in enumerate(bueno)]
            inocuos = sum(self.se_lee(malo) for malo in malos[:datos])
            # A reserved bit, a larger window: a few bits make no difference, and how
            # many depends on what the tar header of the day is compressed to.
            self.assertLess(inocuos, datos // 10, modo)
            for i, malo in enumerate(malos[datos:], datos):
                self.assertTrue(self.se_lee(malo), (modo, i))
            for largo in range(len(bueno)):
                self.assertEqual(self.se_lee(bueno[:largo]), largo >= datos, (modo, largo))

    def se_lee(self, contenido):
        """Whether it is taken for an archive, which must be the right one then."""
        self.okz.write_bytes(contenido)
        shutil.rmtree(self.salida, ignore_errors=True)
        if self.corre("extract", self.okz, "-o", self.salida, *self.con, falla=None).returncode != 0:
            return False
        self.assertEqual((self.salida / "f").read_bytes(), b"hola " * 20)
        self.assertEqual(list(self.lista(*self.con).items()), [("f", ("-", "0644", 100))])
        return True

    def test_cortado(self):
        fichero = self.pon("f", desordenado(17 * MEBI))
        self.comprime(fichero, self.clave)
        bueno = self.okz.read_bytes()
        segundo = bueno.index(b"\x28\xb5\x2f\xfd", 1)
        for casi in (bueno[:-1], bueno + b"basura"):
            self.okz.write_bytes(casi)
            self.assertIn("no tiene índice", self.corre("list", self.okz).lineas[0])
            self.assertEqual((self.extrae("--file", "f") / "f").read_bytes(), fichero.read_bytes())
        shutil.rmtree(self.salida)
        for largo in (5, 1000, segundo, segundo + 1, segundo + 500):
            self.okz.write_bytes(bueno[:largo])
            self.assertRegex(self.error("list", self.okz), "incompleto|no es un archivo")
            self.error_al_sacar()
            self.assertFalse((self.salida / "f").exists())
        # Between two frames and two entries, sound but for the end marker.
        self.sh('tar -b 1 -cf - clave | head -c 1024 | zstd -qfo "$1"', self.d)
        self.assertEqual(self.error("list", self.okz), "el archivo está incompleto")

    def test_no_es_un_archivo(self):
        for contenido in (b"", b"PK\x03\x04", b"hola" * 1000):
            self.okz.write_bytes(contenido)
            self.assertEqual(self.error("list", self.okz), "no es un archivo .okz")
        self.sh('printf "%4000s" | zstd -qfo "$1"', self.d)
        for ruta in (self.okz, self.d):
            self.assertEqual(self.error("list", ruta), "no es un archivo .okz")
        self.assertIn("no existe", self.error("list", self.d / "contraseñas.okz"))

    def test_salida_llena_o_sin_permiso(self):
        como = self.como_nadie()
        self.comprime(self.clave)
        with open("/dev/full", "wb") as lleno:
            r = subprocess.run([MOTOR, "list", self.okz], stdout=lleno, stderr=subprocess.PIPE, check=False)
        self.juzga(r, falla=True)
        os.chmod(self.d, 0o755)
        for destino in (self.salida, self.d):
            self.assertIn("permiso denegado", self.error("extract", self.okz, "-o", destino, **como))


if __name__ == "__main__":
    unittest.main()
