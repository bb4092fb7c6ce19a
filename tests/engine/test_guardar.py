"""Making archives: names, progress, and everything that can go wrong."""

import contextlib
import ctypes
import fcntl
import os
import pathlib
import random
import re
import signal
import struct

from motor import Caso, MEBI, MOTOR, NADIE, PASO, PROGRESO, desordenado


class Nombres(Caso):
    def test_los_que_reciben(self):
        for carpeta in ("uno", "dos", "tres"):
            (self.d / carpeta / "fotos.d").mkdir(parents=True)
            self.pon(f"{carpeta}/a.txt", carpeta)
        self.comprime(*(self.d / c / n for c in ("uno", "dos", "tres") for n in ("fotos.d", "a.txt")))
        self.extrae()
        self.assertEqual([(self.salida / f"a{n}.txt").read_text() for n in ("", " (2)", " (3)")],
                         ["uno", "dos", "tres"])
        self.assertEqual(sorted(p.name for p in self.salida.iterdir() if p.is_dir()),
                         ["fotos.d", "fotos.d (2)", "fotos.d (3)"])
        hija = self.d / "padre/hija"
        hija.mkdir(parents=True)
        for origen, nombre in ((".", "hija"), ("..", "padre"), ("./", "hija"), ("../hija/.", "hija")):
            self.comprime(origen, cwd=hija)
            self.assertEqual(next(iter(self.lista())), nombre)

    def test_los_que_parecen_otra_cosa(self):
        nombres = ["++", "[a,b]", "{}", "%%", "a"]
        for nombre in nombres:
            self.pon(f"c/{nombre}")
        self.comprime(*nombres, cwd=self.c)
        self.assertEqual(sorted(self.lista()), sorted(nombres))

    def test_un_enlace_no_se_sigue(self):
        (self.d / "enlace").symlink_to("c")
        self.comprime(f"{self.d}/enlace/")
        self.assertEqual(os.readlink(self.extrae() / "enlace"), "c")

    def test_la_lista_se_lee_linea_a_linea(self):
        raros = {"a\nb": r"a\x0ab", "\\n": r"\\n", "\x1b[2J": r"\x1b[2J",
                 "\x7f\u0085\u2028\u2029": None, "ñ": "ñ",
                 os.fsdecode(b"\xff\xc0\xaf\xed\xa0\x80"): r"\xff\xc0\xaf\xed\xa0\x80"}
        for nombre in raros:
            self.pon(f" c/{nombre}", nombre.encode(errors="replace"))
        self.comprime(self.d / " c")
        lista = self.lista()
        self.assertEqual(list(lista)[0], r"\x20c")
        self.assertEqual(len(lista), len(raros) + 1)
        for escrito in filter(None, raros.values()):
            self.assertIn(r"\x20c/" + escrito, lista)
        for escrito in lista:
            self.extrae("--file", escrito)
        self.assertEqual({p.name for p in (self.salida / " c").iterdir()}, set(raros))

    def test_lo_que_no_se_guarda(self):
        tubos = (self.d / "tubo", self.d / "tubo Error")
        for tubo in tubos:
            os.mkfifo(tubo)
        self.assertEqual(len(self.comprime(self.clave, *tubos).lineas), 2)
        self.assertEqual(self.error("compress", *tubos[:1], "-o", self.okz), "no hay nada que guardar")
        self.assertEqual(list(self.lista()), ["clave"])

    def test_el_archivo_no_se_guarda_a_si_mismo(self):
        self.pon("c/f")
        self.okz = self.c / "a.okz"
        for _ in range(2):
            self.comprime(self.c)
            self.assertEqual(list(self.lista()), ["c", "c/f"])
        antes = self.okz.read_bytes()
        self.error("compress", self.okz, "-o", self.okz)
        self.assertEqual(self.okz.read_bytes(), antes)
        (self.c / "d").mkdir()
        for otro in ("otro", "d/a.okz"):
            os.link(self.okz, self.c / otro)  # a file like any other
        self.comprime(self.c)
        self.assertEqual(list(self.lista()), ["c", "c/d", "c/d/a.okz", "c/f", "c/otro"])
        self.assertEqual((self.extrae() / "c/otro").read_bytes(), antes)

    def test_destinos(self):
        self.assertEqual(self.comprime(self.clave).lineas, [])  # silent, unless asked to tell
        self.okz.unlink()
        for origen, destino in ((self.c, self.d / "no/existe/a.okz"), (self.c, self.c),
                                (self.d / "no existe", self.okz), (self.c, "/dev/null")):
            self.error("compress", origen, "-o", destino)
        self.assertTrue(pathlib.Path("/dev/null").is_char_device())
        self.assertFalse(self.okz.exists())
        self.okz.symlink_to("real.okz")
        self.comprime(self.clave)
        self.assertTrue(self.okz.is_symlink())
        self.assertEqual(list(self.lista()), ["clave"])

    def test_destinos_que_no_valen(self):
        como = self.como_nadie()
        self.d.chmod(0o1777)
        vetado, real = self.pon("vetado.okz", "el de antes"), self.d / "real.okz"
        ajeno, propio, largo = self.d / "ajeno.okz", self.d / "propio.okz", self.d / ("n" * 256)
        for enlace in (ajeno, propio):
            enlace.symlink_to(real)
        for ruta, dueno in ((ajeno, 1), (propio, NADIE), (self.d, 0)):
            os.chown(ruta, dueno, 0, follow_symlinks=False)
        for destino, porque in ((largo, "nombre es demasiado largo"), (vetado, "es de otro usuario"),
                                (ajeno, "un enlace que otro usuario")):
            self.assertIn(porque, self.error("compress", self.clave, "-o", destino, **como))
        self.assertFalse(real.exists())
        self.corre("compress", self.clave, "-o", propio, **como)
        self.assertEqual((real.stat().st_uid, propio.is_symlink()), (NADIE, True))
        propio.unlink()
        self.d.chmod(0o777)
        os.chown(self.d, NADIE, 0)
        self.assertIn("de solo lectura", self.error("compress", self.clave, "-o", vetado, **como))
        vetado.chmod(0o444)
        self.assertIn("de solo lectura", self.error("compress", self.clave, "-o", vetado))
        self.assertEqual(vetado.read_text(), "el de antes")
        vetado.chmod(0o640)
        os.chown(vetado, 12345, 23456)
        self.corre("compress", self.clave, "-o", vetado)
        e = vetado.stat()
        self.assertEqual((e.st_uid, e.st_gid, e.st_mode & 0o7777), (12345, 23456, 0o640))

    def test_no_se_abre_a_mas_gente(self):
        """(mode, list) of an archive that replaces another: whom the old one, or the folder, has listed."""
        como = self.como_nadie()
        acceso, nadie = "system.posix_acl_access", 2**32 - 1
        lista = struct.pack("<I" + "HHI" * 5, 2, 1, 6, nadie, 2, 6, 12345, 4, 0, nadie,
                            16, 6, nadie, 32, 4, nadie)
        os.setxattr(self.d, "system.posix_acl_default", lista)
        mudo = {**como, "env": self.estorbado(atributo=acceso)}
        for n, (antes, grupo, listado, opciones, modo) in enumerate((
                (0o640, NADIE, None, como, 0o640), (0o240, NADIE, None, como, 0o240),
                (0o640, NADIE, lista, como, 0o664),
                (0o604, 12345, None, como, 0o600), (0o644, 12345, None, como, 0o604),
                (0o640, 12345, lista, como, 0o600), (0o640, NADIE, lista, mudo, 0o600),
                (0o640, 12345, lista, {}, 0o664))):
            with self.subTest(n):
                self.okz = self.pon(f"{n}.okz")
                os.removexattr(self.okz, acceso)
                self.okz.chmod(antes)
                if listado:
                    os.setxattr(self.okz, acceso, listado)
                os.chown(self.okz, NADIE, grupo)
                self.comprime(self.clave, **opciones)
                despues = acceso in os.listxattr(self.okz) and os.getxattr(self.okz, acceso)
                self.assertEqual((self.okz.stat().st_mode & 0o7777, despues),
                                 (modo, lista if modo == 0o664 else False))

    def test_el_nombre_lo_tiene_solo_el_archivo_entero(self):
        """Anything else could meet another run's archive there."""
        libc = ctypes.CDLL(None)
        for entorno in None, self.estorbado(renombrar="no"):
            self.okz.unlink(missing_ok=True)
            aviso = libc.inotify_init()
            libc.inotify_add_watch(aviso, os.fsencode(self.d), 0x3c2)  # written, made, moved, removed
            self.comprime(self.clave, env=entorno)
            visto, i, hechos = os.read(aviso, 65536), 0, []
            os.close(aviso)
            while i < len(visto):
                _, que, _, largo = struct.unpack_from("iIII", visto, i)
                if visto[i + 16:i + 16 + largo].rstrip(b"\0") == b"a.okz":
                    hechos.append(que)
                i += 16 + largo
            self.assertEqual(hechos, [0x80])  # arrived by a rename
            self.assertEqual([*self.d.glob(".orcalin-*")], [])

    def test_lo_que_no_mengua_va_con_lo_comprimido(self):
        self.pon("c/b.vol", os.urandom(MEBI))
        self.pon("c/c.vol", bytes(MEBI))
        self.comprime(self.c)
        self.assertEqual(self.sh('bsdtar -tf "$1" | grep vol', self.d).stdout.split(),
                         [b"c/c.vol", b"c/b.vol"])

    def test_solo_los_ficheros_cuentan_como_hechos(self):
        def hecho(*origenes):
            return PROGRESO.match(self.comprime(*origenes, "--progress").lineas[-1]).groups()
        (self.c / "vacía").mkdir()
        self.assertEqual(hecho(self.c), ("0", "0", "100.0", "0"))
        self.pon("c/vacío")
        os.symlink("x", self.c / "enlace")
        os.link(self.clave, self.c / "duro")
        self.assertEqual(hecho(self.c, self.clave), ("4", "4", "100.0", "0"))


# In MiB, for any number of cores: each may have 16 in hand.
GRANDE = 16 * (os.cpu_count() + 4)


class Faltas(Caso):
    def test_ilegible(self):
        como = self.como_nadie()
        self.pon("c/cerrada/x")
        self.pon("c/1")
        os.chmod(self.pon("c/contraseña Error"), 0)
        os.chmod(self.c / "cerrada", 0)
        mensaje = self.error("compress", self.c, "-o", self.okz, "--level", "1", **como)
        self.assertIn("2 elementos", mensaje)
        self.assertEqual(list(self.lista()), ["c", "c/1", "c/cerrada"])
        antes = self.okz.read_bytes()
        mensaje = self.error("compress", self.c / "contraseña Error", "-o", self.okz, **como)
        self.assertIn("permiso denegado", mensaje)
        self.sigue_como_estaba(antes)
        os.chmod(self.d, 0o555)
        self.assertIn("permiso denegado", self.error("compress", self.clave, "-o", self.okz, **como))

    def sigue_como_estaba(self, antes):
        self.assertEqual(self.okz.read_bytes(), antes)
        self.assertEqual([*self.d.glob(".orcalin-*"), *self.d.glob("a (*")], [])

    def test_lo_incompleto_no_reemplaza(self):
        como = self.como_nadie()
        malo = self.pon("c/malo")
        os.chmod(malo, 0)
        largo = "ñ" * 125 + "a.okz"  # no room for a number
        for nombre, entorno, otros in (("a.okz", None, ["a (2).okz", "a (3).okz"]),
                                       (largo, None, ["ñ" * 123 + " (2).okz"]),
                                       ("b", self.estorbado(renombrar="no"), ["b (2)", "b (3)"]),
                                       ("e", self.estorbado(renombrar="link"), ["e (2)", "e (3)"])):
            self.okz = self.pon(nombre, "el de antes")
            os.chown(self.okz, NADIE, NADIE)
            enlace = self.d / "enlace"
            enlace.unlink(missing_ok=True)
            enlace.symlink_to(nombre)
            for otro in otros:
                mensaje = self.error("compress", self.c, "-o", enlace, env=entorno, **como)
                self.assertIn(f"{malo}»: permiso denegado; lo demás está en «{self.d}/{otro}»", mensaje)
                self.corre("check", self.d / otro)
            self.assertEqual(self.okz.read_text(), "el de antes")
        self.assertEqual([*self.d.glob(".orcalin-*")], [])

    def test_un_limite_al_tamano(self):
        self.comprime(self.clave)
        antes = self.okz.read_bytes()
        self.pon("c/f", desordenado(MEBI))
        mensaje = self.error("-c", 'ulimit -f 100; exec "$@"', "sh", MOTOR, "compress", self.c, "-o",
                             self.okz, executable="/bin/sh")
        self.assertIn("demasiado grande", mensaje)
        self.sigue_como_estaba(antes)

    def con_estorbo(self, *opciones, **estorbos):
        return self.error("compress", self.c, "-o", self.okz, *opciones, env=self.estorbado(**estorbos))

    def test_lo_que_no_se_lee_de_un_fichero(self):
        dentro = desordenado(300_000)
        self.pon("c/1", dentro)
        self.pon("c/2", "detrás")
        mensaje = self.con_estorbo("--no-verify", leer="200000-200001")
        self.assertRegex(mensaje, "^1 elemento .*/c/1»: el disco no responde bien; donde no se puede")
        for dicho in self.error("check", self.okz), self.error_al_sacar():
            self.assertIn("«c/1»: se guardó incompleto", dicho)
        self.assertEqual((self.salida / "c/1").read_bytes(),
                         dentro[:200_000] + bytes(704) + dentro[200_704:])
        self.assertEqual((self.salida / "c/2").read_text(), "detrás")

    def test_lo_que_no_se_lee_de_sus_atributos(self):
        f = self.pon("c/1", "x")
        self.pon("c/2", "detrás")
        for n in range(20):
            os.setxattr(f, f"user.%41{n}", b"valor")
        self.assertRegex(self.con_estorbo(atributo="user.%417"),
                         "^1 elemento .*faltan atributos de .*/c/1»: «user.%417»: el disco no responde")
        self.assertEqual({*os.listxattr(f)} - {*os.listxattr(self.extrae() / "c/1")}, {"user.%417"})
        self.okz.unlink()
        self.assertRegex(self.con_estorbo(hincha="60000"), "/c/1»: «user.%41[0-9]+»: no cabe en este "
                         "formato [(]y 3 más[)]")  # more than readers take of one entry
        self.corre("check", self.okz)
        self.assertEqual(self.sh('bsdtar -xOf "$1" c/2', self.d).stdout.decode(), "detrás")
        self.okz.unlink()
        os.setxattr(f, "user.a=b", b"valor")
        self.assertIn("«user.a=b»: su nombre no cabe", self.con_estorbo())
        os.removexattr(f, "user.a=b")
        todos = 2**32 - 1
        for marca in 2, 8:  # a user and a group, neither of whom is root
            self.okz.unlink()
            renglones = ((1, 6, todos), (2, 6, 1), (marca, 7, 2**31), (4, 4, todos), (16, 7, todos), (32, 4, todos))
            lista = b"".join(struct.pack("<HHI", *r) for r in sorted(renglones))
            os.setxattr(f, "system.posix_acl_access", struct.pack("<I", 2) + lista)
            self.assertIn("/c/1»: «system.posix_acl_access»: no cabe", self.con_estorbo())

    def test_lo_que_dice_estar_vacio(self):
        sistema = pathlib.Path("/proc/version")
        pagina = pathlib.Path("/sys/devices/system/cpu/online")  # claims to hold a whole one
        self.comprime(sistema, pagina, self.pon("c/vacío"))
        self.assertEqual((self.extrae() / "version").read_bytes(), sistema.read_bytes())
        self.assertEqual((self.salida / "online").read_bytes(), pagina.read_bytes())
        self.assertEqual((self.salida / "vacío").read_bytes(), b"")
        for nombre, porque in (("mem", "no responde bien"), ("pagemap", "no dice cuánto contiene")):
            mensaje = self.error("compress", f"/proc/self/{nombre}", self.c, "-o", self.d / "b.okz")
            self.assertRegex(mensaje, f"1 elemento .*{nombre}».*{porque}")
            (self.d / "b.okz").unlink()

    def test_lo_reservado_por_otro(self):
        cede, retiene = (open(self.pon(f"c/{n}.txt", n), "r+b") for n in ("cede", "retiene"))

        def avisado(*_):
            with contextlib.suppress(OSError):  # told again because of the other one
                fcntl.fcntl(cede, fcntl.F_SETLEASE, fcntl.F_UNLCK)

        self.addCleanup(signal.signal, signal.SIGIO, signal.signal(signal.SIGIO, avisado))
        with cede, retiene:
            for f in cede, retiene:
                fcntl.fcntl(f, fcntl.F_SETLEASE, fcntl.F_WRLCK)
            self.assertRegex(self.error("compress", self.c, "-o", self.okz),
                             "^1 elemento .*/c/retiene.txt»: otro programa lo tiene reservado")
        self.assertEqual((self.extrae() / "c/cede.txt").read_text(), "cede")

    def guarda_mientras(self, cambia, *opciones, falla=True, antes=None):
        """What it said of a change in the middle of it, to a new archive, or in the place of one. Reading
        goes ahead of compressing, but not as far as the first file goes."""
        self.okz.unlink(missing_ok=True)
        if antes:
            self.okz.write_text(antes)
        self.antes = desordenado(GRANDE * MEBI // 2).hex().encode()
        grande = self.pon("c/1", self.antes)
        self.hora = grande.stat().st_mtime_ns
        p = self.arranca("compress", self.c, "-o", self.okz, "--level", "5", *opciones)
        cambia(grande)
        return self.termina(p, falla).lineas

    def test_desaparece(self):
        otro = self.pon("c/2")
        self.pon("c/3")
        lineas = self.guarda_mientras(lambda _: otro.unlink())
        self.assertRegex(lineas[-1], r"2 elementos .*primero: .*c/2».*no existe")
        self.assertIn(f"3/3 ficheros (100.0%), {GRANDE} MiB", lineas)
        self.assertEqual(list(self.lista()), ["c", "c/1", "c/3"])

    def test_un_nombre_que_ya_es_de_otro(self):
        """The first name is packed by then, and the second no longer names the same."""
        def otro_fichero(f):
            uno.unlink()
            dos.unlink()
            dos.write_text("nuevo")  # mostly with the same inode

        for cambia, a, falla in ((otro_fichero, "una", True),
                                 (lambda f: dos.write_text("nuevo"), "otra", False)):
            uno, dos = self.pon("c/0", "viejo"), self.c / "2"
            dos.unlink(missing_ok=True)
            os.link(uno, dos)
            self.guarda_mientras(cambia, falla=falla)
            self.corre("extract", self.okz, "-o", self.d / a, falla=None)
            fuera = self.d / a / "c"
            self.assertEqual([(fuera / n).read_text() for n in "02"], ["viejo", "nuevo"])

    def test_cambia(self):
        def sale(a):
            self.assertIn("«c/1»: se guardó incompleto",
                          self.error("extract", self.okz, "-o", self.d / a))
            return (self.d / a / "c/1").read_bytes()

        def reescribe(f):
            with open(f, "r+b") as abierto:  # of the same size
                abierto.seek(-MEBI, os.SEEK_END)
                abierto.write(bytes(MEBI))

        self.assertIn("menguado", self.guarda_mientras(lambda f: os.truncate(f, MEBI))[-1])
        despues = sale("menguado")
        self.assertEqual((len(despues), despues[:MEBI], despues[-MEBI:]),
                         (len(self.antes), self.antes[:MEBI], bytes(MEBI)))
        for n, cambia in enumerate((lambda f: os.truncate(f, 2 * GRANDE * MEBI), reescribe,
                                    lambda f: (reescribe(f), os.utime(f, ns=(self.hora,) * 2)))):
            lineas = self.guarda_mientras(cambia)
            self.assertRegex(lineas[-1], "1 elemento .*/c/1»: ha cambiado mientras se guardaba")
            self.assertIn(f"1/1 ficheros (100.0%), {GRANDE} MiB", lineas)
            self.assertEqual(len(sale(f"cambiado {n}")), len(self.antes))

    def test_un_enlace_en_lugar_de_una_carpeta(self):
        self.pon("c/d/e/f", "propio")
        self.pon("otra/e/f", "ajeno")

        def cambia(_):
            (self.c / "d").rename(self.c / "a")
            (self.c / "d").symlink_to(self.d / "otra")

        self.assertRegex(self.guarda_mientras(cambia)[-1], "2 elementos .*primero: .*/c/d»")
        self.error_al_sacar()
        self.assertEqual({p.read_text() for p in (self.salida / "c").rglob("f")}, {"propio"})

    def test_se_mueve(self):
        """Each is told of what is no longer what was found, and nothing else, not
        even the folder that the archive is written to."""
        for f in ("r/log.0", "r/log.1", "r/log.2", "de/f", "a/f0", "x/1", "x/2", "y/1/f", "y/2/f", "n/0", "q/0"):
            self.pon(f"c/{f}", f)

        def mueve(*pares):
            for viejo, nuevo in pares:
                (self.c / viejo).rename(self.c / nuevo)

        def cambia(_):
            mueve(*((f"r/log.{n}", f"r/log.{n + 1}") for n in (2, 1, 0)), ("de/f", "a/f"))
            for d in "xy":
                mueve((f"{d}/1", f"{d}/3"), (f"{d}/2", f"{d}/1"), (f"{d}/3", f"{d}/2"))
            self.pon("c/n/1")
            self.pon("c/q/bloqueo").unlink()
            (self.c / "q").chmod(0o700)

        self.okz = self.c / "a.okz"
        lineas = self.guarda_mientras(cambia)
        dichos = [re.match(f"Aviso: no se puede leer «{self.c}/(.*)»: (.*)", l) for l in lineas]
        self.assertEqual({d[1]: d[2] for d in dichos if d},
                         {**dict.fromkeys(("r", "r/log.1", "r/log.2", "de", "a", "x/1", "x/2", "y/1", "y/2", "n"),
                                          "ha cambiado mientras se guardaba"),
                          **dict.fromkeys(("r/log.0", "de/f"), "no existe")})
        self.assertIn("«c/r»: se guardó incompleto", "\n".join(self.corre("check", self.okz, falla=True).lineas))

    def test_aparece_otro_archivo(self):
        """Whether there was one at the beginning or not, and be it the same, written to or closed."""
        otro = self.d / "otro"
        for n, (antes, cambia) in enumerate(((None, lambda _: otro.rename(self.okz)),
                                             ("viejo", lambda _: otro.rename(self.okz)),
                                             ("viejo", lambda _: self.okz.write_text("otro!")),
                                             ("viejo", lambda _: self.okz.chmod(0o444))), 2):
            otro.write_text("otro!")
            lineas = self.guarda_mientras(cambia, antes=antes)
            self.assertRegex(lineas[-1], f"ha aparecido otro .*a [(]{n}[)].okz»$")
            self.assertEqual(self.okz.read_text(), "viejo" if n == 5 else "otro!")
            self.corre("check", self.d / f"a ({n}).okz")

    def test_otro_en_lugar_del_que_se_escribe(self):
        def cambia(_):
            nuestro, = self.d.glob(".orcalin-*")
            self.pon("otro", "ajeno").rename(nuestro)

        lineas = self.guarda_mientras(cambia, "--no-verify", antes="viejo")
        self.assertIn("alguien ha cambiado", lineas[-1])
        self.assertEqual(self.okz.read_text(), "viejo")
        self.assertEqual([p.read_text() for p in self.d.glob(".orcalin-*")], ["ajeno"])

    def test_la_carpeta_del_archivo_cambia_de_sitio(self):
        """And another comes in its place, with a file of that name."""
        def cambia(_):
            self.okz.parent.rename(self.d / "allí")
            self.pon("donde/a.okz", "otro")

        self.okz = self.pon("donde/a.okz")
        self.assertIn("ya no está donde estaba", self.guarda_mientras(cambia)[-1])
        self.okz = self.d / "allí/a.okz"
        self.assertEqual(list(self.lista()), ["c", "c/1"])


class Relectura(Caso):
    def setUp(self):
        super().setUp()
        self.entorno = self.estorbado()

    def miente(self, que, cual, *modo, falla=True):
        return self.comprime(self.c, *modo, nivel=None, falla=falla,
                             env={**self.entorno, "ESTORBO_" + que: str(cual)})

    def test_todo_se_compara(self):
        """Whatever becomes of a byte on its way: a hundred times of a hundred."""
        self.pon("c/texto", bytes(random.choices(b"abcd", k=40_000)))
        self.pon("c/otro.jpg", os.urandom(60_000))
        for modo in ("--level", "1"), ("--max",), self.en_clave:
            self.comprime(self.c, *modo, nivel=None)
            bueno = self.okz.read_bytes()
            final = [len(bueno) - n for n in range(1, 180, 16)]  # what becomes of these shows nowhere else
            bits = [*range(0, 60, 8), *final, *random.sample(range(len(bueno)), 12)]
            for mentira in (*(("BIT", n) for n in bits[::PASO]), ("CORTA", 0), ("CORTA", 1), ("COMPRIME", 0)):
                self.assertEqual(self.miente(*mentira, *modo).lineas,
                                 ["Error: lo guardado no se lee igual que lo leído"], (modo, mentira))
            self.assertEqual(self.okz.read_bytes(), bueno)
            self.assertEqual([*self.d.glob(".orcalin-*")], [])

    def test_si_no_se_pide_no_se_hace(self):
        self.pon("c/f", os.urandom(60_000))
        self.miente("BIT", 30000, "--no-verify", falla=False)
        self.error("check", self.okz)
