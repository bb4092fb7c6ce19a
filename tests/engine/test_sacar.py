"""Reading archives: single entries, hostile ones, damaged ones."""

import hashlib
import lzma
import os
import re
import shutil
import stat
import subprocess
import tarfile

from fuzz import semillas
from motor import MEBI, MOTOR, NADIE, PASO, SANEADOR, Caso, cambiado, desordenado
from huellas import diferencias, huella

FICHERO, CARPETA, ENLACE, DURO = tarfile.REGTYPE, tarfile.DIRTYPE, tarfile.SYMTYPE, tarfile.LNKTYPE


class UnaEntrada(Caso):
    def setUp(self):
        super().setUp()
        for ruta, contenido in (("sub/a", "contenido"), ("sub/honda/b", "hondo"),
                                ("subordinado", "otra cosa"), ("-guion", "guion")):
            self.pon(f"c/{ruta}", contenido)
        (self.c / "z").mkdir()
        for otro in ("z1", "z2", "z/1", "z/2"):
            os.link(self.c / "sub/a", self.c / otro)
        self.comprime(self.c)

    def saca(self, entrada, a="salida"):
        salida = self.extrae("--file", entrada, a=a)
        return {os.fspath(p.relative_to(salida)) for p in salida.rglob("*") if p.is_file()}

    def test_fichero_carpeta_y_enlace_duro(self):
        self.assertEqual(self.saca("c/sub/a"), {"c/sub/a"})
        self.assertEqual(self.saca("c/sub", "otra"), {"c/sub/a", "c/sub/honda/b"})
        self.assertEqual(self.lista()["c/z1"], ("h", "0644", 9))
        self.assertEqual(self.saca("c/z1", "duro"), {"c/z1"})
        self.assertEqual((self.d / "duro/c/z1").read_text(), "contenido")
        # Together in one folder, whose file stands outside it.
        self.assertEqual(self.saca("c/z", "juntos"), {"c/z/1", "c/z/2"})
        juntos = self.d / "juntos/c/z"
        self.assertEqual((juntos / "2").read_text(), "contenido")
        self.assertTrue(os.path.samefile(juntos / "1", juntos / "2"))
        self.corre("compress", "-o", self.okz, "--", "-guion", cwd=self.c)
        self.assertEqual(self.saca("-guion", "suelto"), {"-guion"})

    def test_el_contenido_no_se_lee_dos_veces(self):
        # The first of two names has no room; the second must not be made of what is left.
        self.pon("salida/c/z1/ocupada")
        self.pon("salida/c/sub/a/ocupada")
        self.assertIn("no se pudieron sacar bien", self.error_al_sacar("--replace"))
        z2 = self.salida / "c/z2"
        self.assertTrue(not z2.exists() or z2.read_text() == "contenido")

    def test_no_esta(self):
        for entrada in ("c/no", "c/su", "", ".", "./", "/c", "c/sub/a/b", "mal\\escrito",
                        "contraseña"):  # which may not pass for the request of one
            self.assertIn("no está en el archivo: «", self.error_al_sacar("--file", entrada))
        self.assertFalse(self.salida.exists())
        self.salida = self.d / "una/dos"
        self.okz.write_bytes(semillas.marco(semillas.tar([("../f", FICHERO, "mal"), ("d/p", tarfile.FIFOTYPE, "")])[0]))
        self.assertIn("2 elementos", self.error_al_sacar())  # nothing came out at all
        self.assertFalse(self.salida.parent.exists())


class Hostiles(Caso):
    def setUp(self):
        super().setUp()
        self.secreto = self.pon("fuera/secreto", "intacto")
        self.fuera = self.secreto.parent
        self.salida.mkdir()

    def tar(self, *entradas):
        """Entries are (name, type, link target or content)."""
        entradas = [(os.fspath(nombre), tipo, os.fspath(resto)) for nombre, tipo, resto in entradas]
        self.okz.write_bytes(semillas.marco(semillas.tar([*entradas, ("bien", FICHERO, "bien")])[0]))

    def test_ni_fuera_ni_dispositivos(self):
        enlace = ("l", ENLACE, self.fuera)
        casos = [[(ruta, FICHERO, "mal")] for ruta in (self.fuera / "x", "../fuera/x", "a/../../fuera/x", "..")]
        casos += [[("../fuera/d", CARPETA, "")], [("../fuera/l", ENLACE, "x")]]
        casos += [[enlace, (ruta, FICHERO, "mal")] for ruta in ("l/x", "l/d/x")]
        casos += [[enlace, ("h", DURO, destino)] for destino in (self.secreto, "../fuera/secreto", "l/secreto")]
        casos += [[("h", DURO, "b"), ("b", DURO, "h")]]
        casos += [[("h", tipo, "")] for tipo in (tarfile.CHRTYPE, tarfile.BLKTYPE, tarfile.FIFOTYPE)]
        for entradas in casos:
            self.rechaza(*entradas)
            self.assertFalse((self.salida / "h").exists(), entradas)

    def rechaza(self, *entradas):
        self.tar(*entradas)
        antes = huella(self.fuera), {p.name for p in self.d.iterdir()}
        self.error_al_sacar()
        self.assertEqual((huella(self.fuera), {p.name for p in self.d.iterdir()}), antes, entradas)
        self.assertEqual((self.salida / "bien").read_text(), "bien")

    def test_un_enlace_ya_estaba(self):
        """The user's links are not followed, neither for folders nor for files."""
        (self.salida / "l").symlink_to(self.fuera)
        os.link(self.secreto, self.salida / "duro")
        (self.salida / "blando").symlink_to(self.secreto)
        self.tar(("duro", FICHERO, "nuevo"), ("blando", FICHERO, "nuevo"), ("l", CARPETA, ""),
                 ("l/x", FICHERO, "nuevo"))
        for opciones, nombres in (((), ("duro (2)", "blando (2)", "l (2)/x")),
                                  (("--replace",), ("duro", "blando", "l/x"))):
            self.extrae(*opciones)
            self.assertEqual([p.name for p in self.fuera.iterdir()], ["secreto"])
            self.assertEqual(self.secreto.read_text(), "intacto")
            for nombre in nombres:
                self.assertEqual((self.salida / nombre).read_text(), "nuevo")


class LoQueHabia(Caso):
    """Nothing that is there is lost, and nothing of the archive either."""

    def setUp(self):
        super().setUp()
        self.grande = desordenado(2 * MEBI)
        self.pon("c/foto.jpg", "nueva")
        self.pon("c/grande.bin", self.grande)
        self.pon("c/.oculto", "nuevo")
        self.pon("c/x/dentro", "nuevo")
        os.symlink("nuevo", self.c / "enlace.d")
        os.link(self.c / "foto.jpg", self.c / "otra.jpg")
        self.comprime(*sorted(self.c.iterdir()))

    def otros(self, *argumentos, **opciones):
        """{name: the name under which it came out}, and what else was said."""
        r = self.corre("extract", self.okz, "-o", self.salida, *argumentos, **opciones)
        pares = [re.fullmatch("Aviso: «(.*)» sale como «(.*)»: lo que había se queda", l) for l in r.lineas]
        return dict(p.groups() for p in pares if p), [l for l, p in zip(r.lineas, pares) if not p]

    def test_se_queda_y_lo_nuevo_va_al_lado(self):
        viejos = {"foto.jpg": b"vieja", "grande.bin": self.grande[:-1] + b"x", ".oculto": b"viejo",
                  "x": b"viejo", "enlace.d": b"viejo", "otra.jpg": b"vieja", "foto (2).jpg": b"otra"}
        for nombre, contenido in viejos.items():
            self.pon(f"salida/{nombre}", contenido)
        nombres = {"foto.jpg": "foto (3).jpg", "grande.bin": "grande (2).bin", ".oculto": ".oculto (2)",
                   "x": "x (2)", "enlace.d": "enlace (2).d", "otra.jpg": "otra (2).jpg"}
        self.assertEqual(self.otros(), (nombres, ["Aviso: 6 salieron con otro nombre"]))
        for nombre, contenido in viejos.items():
            self.assertEqual((self.salida / nombre).read_bytes(), contenido)
        for nombre, otro in nombres.items():
            self.assertEqual(diferencias(self.c / nombre, self.salida / otro), [], nombre)
        self.assertTrue(os.path.samefile(self.salida / "foto (3).jpg", self.salida / "otra (2).jpg"))
        # Once more, and entry by entry, as the window does: nothing changes, nothing is said.
        (self.salida / "foto (2).jpg").unlink()  # a gap
        antes = huella(self.salida)
        for entrada in ((), *(("--file", nombre) for nombre in self.lista())):
            self.assertEqual(self.otros(*entrada), ({}, []))
            self.assertEqual(huella(self.salida), antes, entrada)
        self.pon("salida/x (2)/dentro", "más viejo")
        self.assertEqual(self.otros(), ({"x": "x (2)", "x/dentro": "x (2)/dentro (2)"},
                                        ["Aviso: 2 salieron con otro nombre"]))

    def test_lo_igual_no_se_toca(self):
        for nombre in ("foto.jpg", "grande (4).bin", "x/dentro"):
            os.utime(self.pon(f"salida/{nombre}", (self.c / nombre.replace(" (4)", "")).read_bytes()), (5, 5))
            os.chmod(self.salida / nombre, 0o600)
        self.pon("salida/grande.bin", bytes(len(self.grande)))  # of the same size
        os.mkdir(self.salida / "enlace.d")
        antes = huella(self.salida)
        self.assertEqual(self.otros()[0], {"enlace.d": "enlace (2).d"})
        despues = huella(self.salida)
        self.assertEqual({r: h[:3] for r, h in despues.items() if r in antes and r != b"."},
                         {r: h[:3] for r, h in antes.items() if r != b"."})
        self.assertEqual({*despues} - {*antes}, {b"enlace (2).d", b".oculto", b"otra.jpg"})

    def test_replace(self):
        for nombre in ("foto.jpg", "grande.bin", "x", "enlace.d"):
            self.pon(f"salida/{nombre}", "viejo")
        os.mkdir(self.salida / ".oculto")
        self.pon("salida/otra.jpg/llena")
        self.assertIn("con contenido en su lugar", self.error_al_sacar("--replace"))
        (self.salida / "otra.jpg/llena").unlink()
        self.assertEqual(self.otros("--replace"), ({}, []))
        os.utime(self.c, ns=(0, self.salida.stat().st_mtime_ns))
        self.assertEqual(diferencias(self.c, self.salida), [])

    def test_en_un_disco_sencillo(self):
        """Without hard links, files without a name, and renames that replace nothing or exchange."""
        sencillo = {"env": self.estorbado(renombrar="nada")}
        os.chmod(self.c / "foto.jpg", 0o640)
        os.setxattr(self.c / "foto.jpg", "user.nota", b"x")
        self.comprime(*sorted(self.c.iterdir()))
        self.pon("salida/grande.bin", "viejo")
        self.pon("salida/x", "viejo")
        nombres = {"grande.bin": "grande (2).bin", "x": "x (2)"}
        self.assertEqual(self.otros(**sencillo), (nombres, ["Aviso: 2 salieron con otro nombre"]))
        una, otra = (huella(self.salida)[n] for n in (b"foto.jpg", b"otra.jpg"))
        self.assertEqual((*una[:3], una[4]), (*otra[:3], otra[4]))  # but for its first name
        self.assertFalse(os.path.samefile(self.salida / "foto.jpg", self.salida / "otra.jpg"))
        for nombre in ("grande.bin", "x"):
            self.assertEqual((self.salida / nombre).read_text(), "viejo")
            self.assertEqual(diferencias(self.c / nombre, self.salida / nombres[nombre]), [])
        for argumentos in ((), ("--replace",)):
            self.assertEqual(self.otros(*argumentos, **sencillo), ({}, []))
        for nombre in ("grande.bin", "x"):
            self.assertEqual(diferencias(self.c / nombre, self.salida / nombre), [])
        self.assertEqual([*self.salida.glob(".*tmp")], [])

    def test_lo_que_sale_llega_al_disco(self):
        mudo = {"env": self.estorbado(volcar="no")}
        self.assertEqual(self.error_al_sacar(**mudo), "no se puede sacar: el disco no responde bien")
        self.extrae(**mudo)  # there is nothing new to flush

    def test_muchos(self):
        for n in range(25):
            self.pon(f"c/{n}", "nuevo")
            self.pon(f"salida/c/{n}", "viejo")
        self.comprime(self.c)
        pares, resto = self.otros()
        self.assertEqual((len(pares), resto), (20, ["Aviso: 25 salieron con otro nombre"]))
        (self.salida / "c/3 (2)").unlink()
        self.assertEqual(self.otros(), ({"c/3": "c/3 (2)"}, ["Aviso: 1 salió con otro nombre"]))
        largo = "ñ" * 127 + "x"  # there is no room for a number behind it
        self.comprime(self.pon(largo, "nuevo"))
        self.pon(f"salida/{largo}", "viejo")
        self.assertEqual(self.otros()[0], {largo: "ñ" * 125 + " (2)"})
        self.assertEqual(self.otros(), ({}, []))

    def test_el_ultimo_de_dos_gana(self):
        dos = [("f", FICHERO, "uno"), ("l", ENLACE, "uno"), ("d", FICHERO, "uno"), ("f", FICHERO, "dos"),
               ("l", ENLACE, "dos"), ("d", CARPETA, ""), ("d/x", FICHERO, "dos")]
        self.okz.write_bytes(semillas.marco(semillas.tar(dos)[0]))
        for _ in range(2):
            self.assertEqual(self.otros()[0], {})
            self.assertEqual({r: h[2] for r, h in huella(self.salida).items() if r not in (b".", b"d")},
                             {b"f": hashlib.sha256(b"dos").digest(), b"l": b"dos",
                              b"d/x": hashlib.sha256(b"dos").digest()})
        shutil.rmtree(self.salida)
        self.pon("salida/f", "del usuario")
        for esperado in ({"f": "f (2)"}, {}):
            self.assertEqual(self.otros()[0], esperado)
            self.assertEqual({p.name: p.read_text() for p in self.salida.glob("f*")},
                             {"f": "del usuario", "f (2)": "dos"})


class Permisos(Caso):
    """No folder is open for a moment to those whom its archive keeps out, and
    those that were there are in the end as they were."""

    def modos(self, *rutas):
        return [stat.S_IMODE((self.salida / ruta).stat().st_mode) for ruta in rutas]

    def setUp(self):
        super().setUp()
        self.addCleanup(os.umask, os.umask(0o022))

    def test_las_nuevas(self):
        self.pon("c/privada/honda/f", "f" * 3000)
        self.pon("c/privada/g", "g" * 3000)
        for carpeta, modo in (("privada/honda", 0o750), ("privada", 0o700), ("", 0o755)):
            os.chmod(self.c / carpeta, modo)
        self.comprime(self.c)
        carpetas = ("c/privada/honda", "c/privada", "c")
        self.extrae()
        self.assertEqual(self.modos(*carpetas), [0o750, 0o700, 0o755])
        self.assertEqual(self.modos("."), [0o755])
        shutil.rmtree(self.salida)
        self.extrae("--file", "c/privada/g")  # which alone says nothing of them
        self.assertEqual(self.modos(*carpetas[1:]), [0o700, 0o755])
        shutil.rmtree(self.salida)
        self.sh('tar -cf - c/privada/honda/f c/privada/g | zstd -qfo "$1"', self.d)
        self.extrae()  # nor is there anything else
        self.assertEqual(self.modos(*carpetas), [0o755] * 3)
        shutil.rmtree(self.salida)
        crudo = semillas.tar([("c/privada/f", FICHERO, "f"), ("c/g", FICHERO, "g"), ("c/privada", CARPETA, "")])[0]
        self.okz.write_bytes(semillas.marco(crudo[:3000]))
        self.error_al_sacar()  # before it came to that
        self.assertEqual(self.modos("c/privada"), [0o700])

    def test_las_que_estaban(self):
        como = self.como_nadie()
        self.pon("c/cerrada/honda/f", desordenado(MEBI))
        self.pon("c/cerrada/z", desordenado(150 * MEBI))
        self.comprime(self.c)
        bueno = self.okz.read_bytes()
        carpetas = ("c", "c/cerrada", "c/cerrada/honda")
        modos = [0o500, 0o050, 0o2]

        def prepara():
            shutil.rmtree(self.salida, ignore_errors=True)
            (self.salida / carpetas[-1]).mkdir(parents=True)
            for carpeta, modo in reversed([("", 0o700), *zip(carpetas, modos)]):
                os.chown(self.salida / carpeta, NADIE, NADIE)
                os.utime(self.salida / carpeta, (5, 5))
                os.chmod(self.salida / carpeta, modo)

        for datos, opciones in ((bueno, ()), (cambiado(bueno, 10_000), ()), (bueno[:MEBI // 2], ()),
                                (bueno, ("--file", "c/cerrada/honda"))):
            prepara()
            self.okz.write_bytes(datos)
            self.corre("extract", self.okz, "-o", self.salida, *opciones, falla=None, **como)
            self.assertEqual(self.modos(*carpetas), modos)
        prepara()
        self.okz.write_bytes(bueno)
        p = subprocess.Popen([MOTOR, "extract", self.okz, "-o", self.salida], stderr=subprocess.PIPE, **como)
        while p.poll() is None and self.modos(*carpetas)[1] == modos[1]:
            pass
        p.terminate()
        self.assertEqual(self.termina(p, True).lineas, ["Error: extracción cancelada"])
        self.assertEqual(self.modos(*carpetas), modos)
        prepara()
        self.extrae("--replace", **como)
        self.assertEqual(self.modos(*carpetas), [0o755] * 3)


class Indice(Caso):
    def pon_con(self, cambia=lambda indice: indice, **mentiras):
        self.okz.write_bytes(semillas.archivo(semillas.entradas(0), cambia=cambia, **mentiras))

    def test_mentiras(self):
        """Whatever a sound index claims, what comes out is what the stream has."""
        self.pon_con()
        antes = self.lista()
        primera = b"\0\x01a"  # nothing in common with the one before, a name of one letter
        for mentira in (dict(cambia=lambda c: c[:-3]), dict(cambia=lambda c: c + b"\0"),
                        dict(cambia=lambda c: b"\xff" * 9 + b"\x01" + c),
                        dict(cambia=lambda c: b"\0" + c[c.index(primera):]),
                        dict(cuantas=1 << 60), dict(cuantas=0), dict(tar=(1 << 64) - 1),
                        dict(lugar=1 << 63), dict(largo=1 << 62)):
            self.pon_con(**mentira)
            self.assertEqual(self.lista(), antes)
            self.assertEqual((self.extrae("--file", "b") / "b/c").read_text(), "hola" * 700)
            shutil.rmtree(self.salida)
        self.pon_con(cambia=lambda c: c.replace(primera, b"\0\x01A"))
        self.assertEqual(list(self.lista()), ["A", *list(antes)[1:]])
        self.error_al_sacar("--file", "A")


class Final(Caso):
    def test_se_echa_de_menos(self):
        """What is made here says at its beginning how it ends."""
        self.pon("c/f", "hola")
        for modo, con_que in (("--level", "3"), "zstd -dc"), (("--max",), "xz -dc"):
            self.comprime(self.c, *modo, nivel=None)
            bueno, lista = self.okz.read_bytes(), self.lista()
            for leido in ("bsdtar -tf", "tar -I zstd -tf" if con_que[0] == "z" else "tar -Jtf",
                          con_que, "python3 -m tarfile -l"):
                if leido[0] != "p" or con_que[0] == "x":
                    self.assertEqual(self.sh(leido + ' "$1"', self.d).stderr, b"", leido)
            indice = bueno.index(b"\x50\x2a\x4d\x18" if con_que[0] == "z" else b"\xfd7zXZ\0\0\1")
            for malo in (bueno[:-1], bueno[:indice], bueno + bytes(4096)):
                self.okz.write_bytes(malo)
                self.assertRegex(self.error("check", self.okz), "índice está dañado|falta el final")
                self.assertIn("no tiene índice", self.corre("list", self.okz).lineas[0])
                self.assertEqual(self.lista(), lista)
                self.assertEqual((self.extrae() / "c/f").read_text(), "hola")

    def test_versiones(self):
        def hecho(**como):
            self.okz.write_bytes(semillas.archivo(semillas.entradas(0), **como))
            return self.lista()
        primera = hecho(version=1)
        self.corre("check", self.okz)
        self.okz.write_bytes(self.okz.read_bytes()[:-1])  # of which nothing was promised
        self.corre("check", self.okz)
        self.assertEqual(hecho(), primera)
        self.corre("check", self.okz)
        self.assertEqual(hecho(marcas=semillas.CON_MAS), primera)
        self.corre("check", self.okz)
        self.assertEqual(hecho(marcas=semillas.INCOMPLETA), primera)
        self.assertIn("«a»: se guardó incompleto", self.error("check", self.okz))

    def test_las_sumas(self):
        """Bytes that changed with all checksums of the packing right are found all the same."""
        datos = semillas.archivo(semillas.entradas(0))  # whose frames have none
        for donde, que in ((b"holahola", b"holahole"), (b"\x01a", b"\x01b")):
            self.okz.write_bytes(datos.replace(donde, que, 1))
            self.assertIn("dañado", self.error("check", self.okz))


class Danos(Caso):
    def con_danos(self, version, *trozos):
        """An archive in frames of 2 KiB, those that hold these texts changed; its entries."""
        entradas = [(f"c/{n}", FICHERO, f"{n:04}" * 100) for n in range(30)]
        entradas += [("c/grande", FICHERO, "".join(f"<{n:04}>" for n in range(1000))),
                     ("c/d/final", FICHERO, "final"), ("c/d/duro", DURO, "c/7"), ("c/d/otro", DURO, "c/9"),
                     ("c/d", CARPETA, ""), ("c", CARPETA, "")]
        datos = semillas.archivo(entradas, version=version)
        for trozo in trozos:
            self.assertIn(trozo, datos)
            i = datos.index(trozo)
            # A block that is none, since the frames have no checksum of their own.
            datos = cambiado(datos, datos.rindex(b"\x28\xb5\x2f\xfd", 0, i) + 13, 6)
        self.okz.write_bytes(datos)
        return {nombre: contenido for nombre, tipo, contenido in entradas if tipo == FICHERO}

    def test_lo_sano_sale(self):
        def en(carpeta):
            return {os.fspath(p.relative_to(self.salida)): p.read_text() for p in
                    (self.salida / carpeta).rglob("*") if p.is_file() and not p.is_symlink()}

        for version in (1, 2):
            buenos = self.con_danos(version, b"0007" * 50, b"<0400>", b"<0700>")
            for opciones in ((), ("--file", "c"), ("--replace",)):
                shutil.rmtree(self.salida, ignore_errors=True)
                self.salida.mkdir()
                if opciones == ("--replace",):
                    self.pon("salida/c/7", "viejo")
                r = self.corre("extract", self.okz, "-o", self.salida, *opciones, falla=True)
                perdidos = set(re.findall("^Aviso: dañado: «(.*)»$", r.stderr.decode(), re.M))
                self.assertRegex(r.lineas[-1], f"^Error: {len(perdidos)} elementos no se pudieron sacar bien")
                self.assertLessEqual({"c/7", "c/d/duro", "c/grande"}, perdidos)
                self.assertLess(len(perdidos), 8)
                self.assertFalse(perdidos & {"c", "c/d", "c/d/final", "c/d/otro", "c/0", "c/29"}, perdidos)
                quedan = {r: c for r, c in buenos.items() if r not in perdidos}
                hay = en("c")
                self.assertEqual(hay.pop("c/d/otro", None), quedan.get("c/9"))
                if opciones == ("--replace",):
                    self.assertEqual(hay.pop("c/7"), "viejo")  # not replaced, not for a moment
                self.assertEqual(hay, quedan)
                for carpeta in ("c", "c/d"):
                    self.assertEqual((self.salida / carpeta).stat().st_mtime, 1.5)
            self.assertIn("dañado", self.error_al_sacar("--file", "c/grande"))
            self.extrae("--file", "c/d/final", a="una")

    def test_sin_indice_lo_de_antes_se_queda(self):
        buenos = self.con_danos(2)
        self.okz.write_bytes(self.okz.read_bytes()[:self.okz.read_bytes().index(b"<0500>")])
        r = self.corre("extract", self.okz, "-o", self.salida, falla=True)
        self.assertIn("Aviso: dañado: «c/grande»", r.lineas)
        self.assertEqual({p.name for p in (self.salida / "c").iterdir()}, {str(n) for n in range(30)})
        self.assertEqual((self.salida / "c/29").read_text(), buenos["c/29"])

    def test_lo_que_el_indice_dice_de_otro_modo(self):
        for donde, que in ((b"\x01a-", b"\x01A-"), (b"\xf0\x15", b"\xf1\x15")):
            self.okz.write_bytes(semillas.archivo(semillas.entradas(0), cambia=lambda c: c.replace(donde, que, 1)))
            self.assertEqual(self.error_al_sacar(), "el índice no dice lo que hay en el archivo")
            self.assertEqual((self.salida / "a").read_text(), "hola" * 700)
        self.okz.write_bytes(semillas.archivo(semillas.entradas(0), marcas=semillas.INCOMPLETA))
        for opciones in ((), ("--file", "a")):
            self.assertIn("se guardó incompleto", self.error_al_sacar(*opciones))

    def test_ni_un_byte_cambiado_ni_un_corte_pasa(self):
        """Every byte in turn, every length; however it is made. What is not
        refused is right; what comes after the data is never needed."""
        fichero = self.pon("f", b"hola " * 20)
        for modo, tras in ((("--level", "1"), 80), (("--max",), 105), (self.en_clave, None)):
            self.comprime(fichero, *modo, nivel=None)
            bueno = self.okz.read_bytes()
            datos = int.from_bytes(bueno[-tras:8 - tras], "little") if tras else len(bueno)
            malos = {i: bueno[:i] + bytes([bueno[i] ^ 0x10]) + bueno[i + 1:]
                     for i in range(0, len(bueno), PASO)}
            inocuos = sum(self.se_lee(malo) for i, malo in malos.items() if i < datos)
            # A reserved bit, a larger window: a few bits make no difference, and how
            # many depends on what the tar header of the day is compressed to.
            self.assertLess(inocuos, datos // 10, modo)
            callados = 0
            for i, malo in [(i, malo) for i, malo in malos.items() if i >= datos]:
                self.assertTrue(self.se_lee(malo), (modo, i))
                r = self.corre("check", self.okz, falla=None)
                callados += r.returncode == 0
                self.assertNotIn("dañado: ", r.stderr.decode(), (modo, i))
            # Without its checksum the index is as good, and compared all the same.
            self.assertLessEqual(callados, 1)
            for largo in range(0, len(bueno), PASO):
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
        bueno = semillas.archivo(semillas.entradas(0), 4096)
        self.okz.write_bytes(bueno + b"basura")
        self.assertIn("no tiene índice", self.corre("list", self.okz).lineas[0])
        self.assertEqual((self.extrae("--file", "a") / "a").read_text(), "hola" * 700)
        shutil.rmtree(self.salida)
        segundo = bueno.index(b"\x28\xb5\x2f\xfd", 1)
        for largo in (3000, segundo, segundo + 500):
            self.okz.write_bytes(bueno[:largo])
            self.assertEqual(self.error("list", self.okz), "el archivo está incompleto")
            self.error_al_sacar()
            self.assertFalse((self.salida / "a").exists())
        # Between two frames and two entries, sound but for the end marker.
        self.sh('tar -b 1 -cf - clave | head -c 1024 | zstd -qfo "$1"', self.d)
        self.assertEqual(self.error("list", self.okz), "el archivo está incompleto")

    def test_no_es_un_archivo(self):
        for contenido in (b"", b"PK\x03\x04", b"hola" * 1000, semillas.marco(b" " * 4000)):
            self.assertEqual(self.error("list", self.pon("otro", contenido)), "no es un archivo .okz")
        self.assertEqual(self.error("list", self.d), "no es un archivo .okz")
        self.assertIn("no existe", self.error("list", self.d / "contraseñas.okz"))

    def test_salida_llena(self):
        self.comprime(self.clave)
        with open("/dev/full", "wb") as lleno:
            r = subprocess.run([MOTOR, "list", self.okz], stdout=lleno, stderr=subprocess.PIPE, check=False)
        self.juzga(r, falla=True)


class Desmedidos(Caso):
    """Small files that would cost much: little memory will do, and few lines."""

    MEMORIA = "" if SANEADOR else "ulimit -v 400000; "

    def acaba(self, *orden, falla=True):
        r = self.corre("-c", self.MEMORIA + 'ulimit -f 200000; exec "$@"', "sh", MOTOR, *orden, falla=falla,
                       executable="/bin/sh")
        self.assertLess(len(r.stdout) + len(r.stderr), 30 * MEBI)
        return r.lineas[-1:]

    def test_rutas_que_se_comparten(self):
        """Two bytes of index for each path of 100 kB, and of 10 kB."""
        for largo, cuantas in ((100_000, 50_000), (10_000, 100_000)):
            def mas(claro, largo=largo, cuantas=cuantas):
                primera = claro.index(b"\0\1a")
                ruta = b"/".join([b"x" * 99] * (largo // 100))
                uno = lambda igual, resto: (semillas.variable(igual) + semillas.variable(len(resto)) + resto +
                                            b"l\0\0" + semillas.variable(0))
                return (claro[:primera] + uno(0, b"0") + uno(0, ruta) +
                        b"".join(uno(largo - 8, b"%06d" % n) for n in range(cuantas)))
            self.okz.write_bytes(semillas.archivo(semillas.entradas(0), cambia=mas, cuantas=cuantas + 2))
            self.assertLess(self.okz.stat().st_size, 3 * MEBI)
            self.acaba("list", self.okz, falla=False)  # the stream has it right
            self.acaba("extract", self.okz, "-o", self.salida, falla=False)
            self.acaba("check", self.okz)

    def test_marcos_sin_nada(self):
        bueno = semillas.marco(semillas.tar(semillas.entradas(0))[0])
        vacio, xz = semillas.marco(b""), lzma.compress(b"")
        for estorbo in (vacio * 200_000, semillas.relleno(8) * 200_000):
            for datos in (estorbo + bueno, bueno + estorbo):
                self.okz.write_bytes(datos)
                for orden in (("list",), ("check",), ("extract", "-o", self.salida)):
                    self.assertRegex(self.acaba(orden[0], self.okz, *orden[1:])[0], "dañado|no es un archivo")
        self.okz.write_bytes(xz * 100_000)
        self.assertIn("dañado", self.acaba("list", self.okz)[0])

    def test_detras_del_final(self):
        """A stream that goes on with zeros for ever, 4 bytes of them for 128 KiB."""
        ceros = b"\x28\xb5\x2f\xfd\x00\x38" + (b"\x02\x00\x10\x00" * 3000) + b"\x01\x00\x00"
        self.okz.write_bytes(semillas.marco(semillas.tar(semillas.entradas(0))[0]) + ceros * 100)
        self.assertIn("dañado", self.acaba("list", self.okz)[0])

    def test_enlaces_a_enlaces(self):
        """Thirty thousand, each to the one before or to the one behind, or in a circle."""
        cuantos = 30_000
        for destino in (lambda n: n - 1, lambda n: n + 1, lambda n: n ^ 1):
            entradas = [(f"e{n}", DURO, f"e{destino(n)}") for n in range(cuantos)]
            self.okz.write_bytes(semillas.marco(semillas.tar([("bien", FICHERO, "bien"), *entradas])[0]))
            self.acaba("extract", self.okz, "-o", self.salida)
            self.assertEqual((self.salida / "bien").read_text(), "bien")

    def test_un_hueco_enorme(self):
        for bytes_, sale in ((10**15, False), (2**42, True)):
            ficha = tarfile.TarInfo("hueco")
            mapa = b"0\n".ljust(512, b"\0")
            ficha.size, ficha.pax_headers = len(mapa), {
                "GNU.sparse.major": "1", "GNU.sparse.minor": "0", "GNU.sparse.name": "hueco",
                "GNU.sparse.realsize": str(bytes_)}
            self.okz.write_bytes(semillas.marco(ficha.tobuf(tarfile.PAX_FORMAT) + mapa + bytes(1024)))
            for _ in range(2):
                self.corre("extract", self.okz, "-o", self.salida, falla=not sale)
            self.assertEqual((self.salida / "hueco").exists(), sale)
        self.assertEqual([p.name for p in self.salida.iterdir()], ["hueco"])
