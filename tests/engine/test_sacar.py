"""Reading archives: single entries, hostile ones, damaged ones."""

import io
import os
import shutil
import subprocess
import tarfile
import unittest

from motor import ESCASO, MOTOR, Caso, desordenado, foto


class UnaEntrada(Caso):
    def setUp(self):
        super().setUp()
        c = self.d / "c"
        (c / "sub/honda").mkdir(parents=True)
        (c / "sub/a").write_text("contenido")
        (c / "sub/honda/b").write_text("hondo")
        (c / "subordinado").write_text("otra cosa")
        os.link(c / "sub/a", c / "z1")
        os.link(c / "sub/a", c / "z2")
        (c / "-guion").write_text("guion")
        self.comprime(c)

    def saca(self, entrada, a="salida"):
        salida = self.extrae("--file", entrada, a=a)
        return {os.fspath(p.relative_to(salida)) for p in salida.rglob("*") if p.is_file()}

    def test_fichero_y_carpeta(self):
        self.assertEqual(self.saca("c/sub/a"), {"c/sub/a"})
        self.assertEqual(self.saca("c/sub", "otra"), {"c/sub/a", "c/sub/honda/b"})
        self.assertEqual(self.saca("c/-guion", "guion"), {"c/-guion"})

    def test_guion_delante(self):
        self.corre("compress", "-o", self.okz, "--", "-guion", cwd=self.d / "c")
        self.assertEqual(self.saca("-guion"), {"-guion"})

    def test_enlace_duro_sin_su_fichero(self):
        self.assertEqual(self.lista()["c/z1"][0], "h")
        self.assertEqual(self.saca("c/z1"), {"c/z1"})
        self.assertEqual((self.d / "salida/c/z1").read_text(), "contenido")

    def test_enlaces_duros_a_un_ausente(self):
        # Together in one folder, whose file stands outside it.
        (self.d / "e/dentro").mkdir(parents=True)
        (self.d / "e/afuera").write_text("contenido")
        for n in "12":
            os.link(self.d / "e/afuera", self.d / f"e/dentro/{n}")
        self.comprime(self.d / "e")
        self.assertEqual(self.saca("e/dentro"), {"e/dentro/1", "e/dentro/2"})
        salida = self.d / "salida/e/dentro"
        self.assertEqual((salida / "2").read_text(), "contenido")
        self.assertTrue(os.path.samefile(salida / "1", salida / "2"))

    def test_el_contenido_no_se_lee_dos_veces(self):
        # The first of two names has no room; the second must not be made of what is left.
        (self.d / "salida/c/z1/ocupada").mkdir(parents=True)
        (self.d / "salida/c/sub").mkdir()
        (self.d / "salida/c/sub/a").mkdir()
        (self.d / "salida/c/sub/a/ocupada").touch()
        mensaje = self.error("extract", self.okz, "-o", self.d / "salida")
        self.assertIn("no se pudieron sacar bien", mensaje)
        z2 = self.d / "salida/c/z2"
        self.assertTrue(not z2.exists() or z2.read_text() == "contenido")

    def test_no_esta(self):
        for entrada in ("c/no", "c/su", "", "/c", "c/sub/a/b", "mal\\escrito"):
            mensaje = self.error("extract", self.okz, "-o", self.d / "salida", "--file", entrada)
            self.assertIn("no está en el archivo: «", mensaje)
        # A name may not pass for the message that asks for a password.
        self.error("extract", self.okz, "-o", self.d / "salida", "--file", "contraseña")


class Hostiles(Caso):
    def setUp(self):
        super().setUp()
        self.fuera = self.d / "fuera"
        self.fuera.mkdir()
        (self.fuera / "secreto").write_text("intacto")
        self.destino = self.d / "salida"
        self.destino.mkdir()

    def tar(self, *entradas):
        """Entries are (name, type, link target or content)."""
        memoria = io.BytesIO()
        with tarfile.open(fileobj=memoria, mode="w", format=tarfile.PAX_FORMAT) as t:
            for nombre, tipo, resto in (*entradas, ("bien", tarfile.REGTYPE, "bien")):
                e = tarfile.TarInfo(os.fspath(nombre))
                e.type = tipo
                datos = resto.encode() if tipo == tarfile.REGTYPE else b""
                e.size, e.linkname = len(datos), "" if datos else os.fspath(resto)
                t.addfile(e, io.BytesIO(datos))
        subprocess.run(["zstd", "-qfo", self.okz], input=memoria.getvalue(), check=True)

    def rechaza(self, *entradas, **opciones):
        self.tar(*entradas)
        antes = foto(self.fuera)
        self.error("extract", self.okz, "-o", self.destino, **opciones)
        self.assertEqual(foto(self.fuera), antes)
        self.assertEqual({p.name for p in self.d.iterdir()}, {"a.okz", "clave", "fuera", "salida"})
        self.assertEqual((self.destino / "bien").read_text(), "bien")

    def test_rutas(self):
        for ruta in (self.fuera / "x", "../fuera/x", "a/../../fuera/x", "..", "./../x"):
            self.rechaza((ruta, tarfile.REGTYPE, "mal"))
        self.rechaza(("../fuera/d", tarfile.DIRTYPE, ""))
        self.rechaza(("../fuera/l", tarfile.SYMTYPE, "x"))

    def test_por_un_enlace_simbolico(self):
        for destino in (self.fuera, "../fuera"):
            self.rechaza(("l", tarfile.SYMTYPE, destino), ("l/x", tarfile.REGTYPE, "mal"))
            self.rechaza(("l", tarfile.SYMTYPE, destino), ("l/d/x", tarfile.REGTYPE, "mal"))
            self.rechaza(("l", tarfile.SYMTYPE, destino), ("l/secreto", tarfile.SYMTYPE, "mal"))

    def test_enlaces_duros(self):
        for destino in (self.fuera / "secreto", "../fuera/secreto", "l/secreto"):
            self.rechaza(("l", tarfile.SYMTYPE, self.fuera), ("h", tarfile.LNKTYPE, destino))
            self.assertFalse((self.destino / "h").exists())
        self.rechaza(("a", tarfile.LNKTYPE, "b"), ("b", tarfile.LNKTYPE, "a"))

    def test_un_enlace_ya_estaba(self):
        (self.destino / "l").symlink_to(self.fuera)
        self.rechaza(("l/x", tarfile.REGTYPE, "mal"))
        os.link(self.fuera / "secreto", self.destino / "duro")
        (self.destino / "blando").symlink_to(self.fuera / "secreto")
        self.tar(("duro", tarfile.REGTYPE, "nuevo"), ("blando", tarfile.REGTYPE, "nuevo"),
                 ("l", tarfile.DIRTYPE, ""), ("l/x", tarfile.REGTYPE, "nuevo"))
        self.extrae()
        self.assertEqual([p.name for p in self.fuera.iterdir()], ["secreto"])
        self.assertEqual((self.fuera / "secreto").read_text(), "intacto")
        for nombre in ("duro", "blando", "l/x"):
            self.assertEqual((self.destino / nombre).read_text(), "nuevo")

    def test_dispositivos(self):
        for tipo in (tarfile.CHRTYPE, tarfile.BLKTYPE, tarfile.FIFOTYPE):
            self.rechaza(("dispositivo", tipo, ""))
            self.assertFalse((self.destino / "dispositivo").exists())

    def test_nombres_en_la_lista(self):
        self.tar(("a\n-0644 1 falsa", tarfile.REGTYPE, "x"), ("\x1b[2J", tarfile.REGTYPE, "x"))
        self.assertEqual(list(self.lista()), [r"\x1b[2J", r"a\x0a-0644 1 falsa", "bien"])


class Danos(Caso):
    def test_ni_un_byte_cambiado_ni_un_corte_pasa(self):
        """Every byte in turn, every length; however it is made. What is not
        refused is right; what comes after the data is never needed."""
        fichero = self.d / "f"
        fichero.write_bytes(b"hola " * 20)
        cifrado = ("--encrypt", "--password-file", self.clave, *ESCASO)
        for modo, tras in ((("--level", "1"), 48), (("--max",), 73), (cifrado, None)):
            self.corre("compress", fichero, "-o", self.okz, *modo)
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
        salida = self.d / "salida"
        shutil.rmtree(salida, ignore_errors=True)
        con = ("--password-file", self.clave)
        saca = subprocess.run([MOTOR, "extract", self.okz, "-o", salida, *con], capture_output=True,
                              check=False)
        self.juzga(saca, falla=saca.returncode != 0)
        if saca.returncode == 0:
            self.assertEqual((salida / "f").read_bytes(), b"hola " * 20)
            self.assertEqual(list(self.lista(*con).items()), [("f", ("-", "0644", 100))])
        return saca.returncode == 0

    def test_cortado(self):
        fichero = self.d / "f"
        fichero.write_bytes(desordenado(17 * 1024 * 1024))
        self.comprime(fichero, self.clave)
        bueno = self.okz.read_bytes()
        segundo = bueno.index(b"\x28\xb5\x2f\xfd", 1)
        self.okz.write_bytes(bueno[:-1])
        self.assertIn("no tiene índice", self.corre("list", self.okz).lineas[0])
        self.assertEqual((self.extrae("--file", "f") / "f").read_bytes(), fichero.read_bytes())
        shutil.rmtree(self.d / "salida")
        for largo in (5, 1000, segundo, segundo + 1, segundo + 500):
            self.okz.write_bytes(bueno[:largo])
            self.assertRegex(self.error("list", self.okz), "incompleto|no es un archivo")
            self.error("extract", self.okz, "-o", self.d / "salida")
            self.assertFalse((self.d / "salida/f").exists())

    def test_cortado_entre_dos_marcos_y_dos_entradas(self):
        datos = io.BytesIO()
        with tarfile.open(fileobj=datos, mode="w", format=tarfile.USTAR_FORMAT) as t:
            t.add(self.clave, "uno")
        medio = datos.getvalue()[:1024]  # sound but for the end marker
        subprocess.run(["zstd", "-qfo", self.okz], input=medio, check=True)
        self.assertEqual(self.error("list", self.okz), "el archivo está incompleto")

    def test_no_es_un_archivo(self):
        for contenido in (b"", b"PK\x03\x04", b"hola" * 1000):
            self.okz.write_bytes(contenido)
            self.assertEqual(self.error("list", self.okz), "no es un archivo .okz")
        subprocess.run(["zstd", "-qfo", self.okz], input=b"hola" * 1000, check=True)
        self.assertEqual(self.error("list", self.okz), "no es un archivo .okz")
        self.assertEqual(self.error("list", self.d), "no es un archivo .okz")
        contrasenas = self.d / "contraseñas.okz"
        self.assertIn("no existe", self.error("list", contrasenas))

    def test_basura_detras(self):
        self.comprime(self.clave)
        antes = self.lista()
        self.okz.write_bytes(self.okz.read_bytes() + b"basura")
        self.assertEqual(self.lista(), antes)
        self.assertIn("no tiene índice", self.corre("list", self.okz).lineas[0])

    def test_salida_cerrada_o_llena(self):
        self.comprime(self.clave)
        with open("/dev/full", "wb") as lleno:
            r = subprocess.run([MOTOR, "list", self.okz], stdout=lleno,
                               stderr=subprocess.PIPE, check=False)
        self.juzga(r, falla=True)

    def test_carpeta_sin_permiso(self):
        como = self.como_nadie()
        self.comprime(self.clave)
        os.chmod(self.d, 0o755)
        self.assertIn("permiso denegado",
                      self.error("extract", self.okz, "-o", self.d / "salida", **como))
        self.assertIn("permiso denegado", self.error("extract", self.okz, "-o", self.d, **como))


if __name__ == "__main__":
    unittest.main()
