"""Runs that are cut short: killed, cancelled, or out of something, at any moment;
ORCALIN_VECES says how often. As root in a mount namespace of one's own."""

import contextlib
import ctypes
import fcntl
import os
import random
import shutil
import signal
import subprocess
import time

from motor import Caso, MEBI, MOTOR, SEGUNDO, desordenado, sin_saneador
from huellas import huella

VECES = int(os.environ.get("ORCALIN_VECES", "4"))
PR_SET_CHILD_SUBREAPER = 36
SENALES = [s for s in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
           if signal.getsignal(s) != signal.SIG_IGN]  # as under nohup


class Cortado(Caso):
    """Rounds with a tree that is different in each, so that no archive passes for another."""

    def setUp(self):
        super().setUp()
        for n in range(40):
            self.pon(f"c/f{n}", desordenado(20_000) + b"texto " * 5_000)
        self.pon("c/grande", desordenado(MEBI) * 3)

    def siguiente(self):
        """Another tree and another way to pack it."""
        self.pon("c/marca", desordenado(16))
        modos = (("--level", "3"), ("--level", "19", "--progress"), ("--max",),
                 ("--level", "1", *self.en_clave))
        return ("compress", self.c, "-o", self.okz, *random.choice(modos))

    def plazo(self, orden):
        """Seconds that the whole run takes."""
        desde = time.monotonic()
        self.corre(*orden)
        return time.monotonic() - desde

    def corta(self, orden, senal, plazo):
        """Sends the signal at a moment within `plazo` seconds, unless the run is over."""
        p = subprocess.Popen([MOTOR, *orden], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        time.sleep(random.uniform(0, plazo))
        for otra in (senal, *random.sample(SENALES, senal in SENALES)):
            p.send_signal(otra)
        desde = time.monotonic()
        p.lineas = p.communicate(timeout=30)[1].decode().splitlines()
        p.tardanza = time.monotonic() - desde
        return p

    def sin_restos(self, donde=None):
        self.assertEqual([*(donde or self.d).rglob(".orcalin-*")], [])

    def marca(self):
        """The tree's mark in the archive, after a look at all of it."""
        self.corre("check", self.okz, *self.con)
        return (self.extrae("--file", "c/marca", "--replace", *self.con) / "c/marca").read_bytes()

    def compara_lo_que_hay(self, carpeta, buenos):
        if not carpeta.exists():
            return
        for ruta, ficha in huella(carpeta).items():
            self.assertEqual(ficha[2], buenos[ruta][2], ruta)


class Matar(Cortado):
    def test_en_cualquier_momento(self):
        plazo = self.plazo(self.siguiente())
        for _ in range(VECES):
            antes = (self.c / "marca").read_bytes()
            orden = self.siguiente()
            self.corta(orden, signal.SIGKILL, plazo)
            self.assertIn(self.marca(), (antes, (self.c / "marca").read_bytes()))
            plazo = 0.5 * plazo + 0.5 * self.plazo(self.siguiente())
            self.sin_restos()
            self.assertEqual(self.marca(), (self.c / "marca").read_bytes())

    def test_lo_que_se_limpia_y_lo_que_no(self):
        resto, vivo = ".orcalin-1-22.tmp", f".orcalin-{os.getpid()}-3.tmp"
        sitio = self.d / "sitio"
        for nombre in (resto, vivo, ".orcalin-1-2.tmp.txt", ".orcalin-1-.tmp", ".orcalin-1-2-3.tmp"):
            self.pon(f"sitio/{nombre}")
        (sitio / ".orcalin-1-4.tmp").symlink_to(self.clave)
        (sitio / ".orcalin-1-5.tmp").mkdir()
        if os.geteuid() == 0:
            os.chown(self.pon("sitio/.orcalin-1-6.tmp"), 1, 1)
        quedan = {p.name for p in sitio.iterdir()} - {resto}
        cerrojo = subprocess.Popen(["flock", sitio / vivo, "-c", "echo; cat"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(cerrojo.communicate)
        cerrojo.stdout.readline()
        self.comprime(self.clave)
        self.extrae(a="sitio")  # it cleans where it writes, and an archive does, too
        self.assertEqual({p.name for p in sitio.iterdir()}, quedan | {"clave"})
        self.pon(f"sitio/{resto}")
        self.corre("compress", self.clave, "-o", sitio / "a.okz")
        self.assertEqual({p.name for p in sitio.iterdir()}, quedan | {"clave", "a.okz"})


class Cancelar(Cortado):
    def setUp(self):
        super().setUp()
        # Whatever a run leaves behind becomes a child of ours.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)

    def acabado(self, p, texto):
        """Whether the run ended well before the signal came. It may not even have begun."""
        self.assertLess(p.tardanza, SEGUNDO)
        if p.returncode == 1:
            self.assertEqual([l for l in p.lineas if "Error" in l], ["Error: " + texto])
        else:
            self.assertIn(p.returncode, (0, *(-s for s in SENALES)))
        return p.returncode == 0

    def test_al_guardar(self):
        plazo = self.plazo(self.siguiente())
        tuberia = self.d / "tubería"
        os.mkfifo(tuberia)  # nobody writes into it
        for n in range(VECES):
            antes = self.okz.read_bytes()
            orden = self.siguiente()
            if n % 4 == 3:
                orden = (*orden[:4], "--encrypt", "--password-file",
                         random.choice((tuberia, self.clave)))  # half a second to derive the key
            p = self.corta(orden, random.choice(SENALES), plazo)
            if self.acabado(p, "guardado cancelado"):
                self.assertEqual(self.marca(), (self.c / "marca").read_bytes())
            else:
                self.assertEqual(self.okz.read_bytes(), antes)
            self.sin_restos()

    def test_al_sacar(self):
        self.comprime(self.c)
        buenos = huella(self.c)
        orden = ("extract", self.okz, "-o")
        plazo = self.plazo((*orden, self.d / "todo"))
        for n in range(VECES):
            p = self.corta((*orden, self.salida), random.choice(SENALES), plazo)
            self.acabado(p, "extracción cancelada")
            self.sin_restos(self.salida)
            self.compara_lo_que_hay(self.salida / "c", buenos)
            if n % 2:
                shutil.rmtree(self.salida, ignore_errors=True)

    def test_la_despedida_es_lo_ultimo(self):
        """By then the space is given back, although somebody has the file open."""
        for n in range(10):
            self.pon(f"c/mucho{n}", desordenado(20 * MEBI))
        p = subprocess.Popen([MOTOR, "compress", self.c, "-o", self.okz, "--level", "1"], stderr=subprocess.PIPE)
        self.addCleanup(p.stderr.close)
        while True:  # the name that is tried first comes and goes
            self.assertIsNone(p.poll())
            with contextlib.suppress(FileNotFoundError):
                if hallados := [f for f in self.d.glob(".orcalin-*") if f.stat().st_size > 64 * MEBI]:
                    break
        with open(hallados[0], "rb") as fichero:
            p.terminate()
            self.assertEqual(p.stderr.readline(), b"Error: guardado cancelado\n")
            estado = os.fstat(fichero.fileno())
        self.assertEqual(estado.st_nlink, 0)
        self.assertLess(estado.st_blocks * 512, 48 * MEBI)  # one that is written to until the end
        self.assertEqual(p.wait(timeout=SEGUNDO), 1)
        with self.assertRaises(ChildProcessError):  # nobody stays behind
            os.waitpid(-1, os.WNOHANG)

    def test_aunque_nadie_lea(self):
        lectura, escritura = os.pipe()
        self.addCleanup(os.close, lectura)
        os.write(escritura, bytes(fcntl.fcntl(escritura, fcntl.F_GETPIPE_SZ)))
        p = subprocess.Popen([MOTOR, *self.siguiente()[:4], "--progress", "--max"], stderr=escritura)
        os.close(escritura)
        while p.poll() is None and not [*self.d.glob(".orcalin-*")]:
            time.sleep(0.01)
        p.terminate()
        self.assertEqual(p.wait(timeout=SEGUNDO), 1)
        self.sin_restos()

    def test_lo_que_no_la_corta(self):
        # In the background of a script, under nohup; stopped and taken up again.
        p = subprocess.Popen(["sh", "-c", 'trap "" INT HUP; exec "$@"', "sh", MOTOR,
                              "compress", self.c, "-o", self.okz, "--level", "19", "--progress"],
                             stderr=subprocess.PIPE)
        p.stderr.readline()
        for senal in (signal.SIGINT, signal.SIGHUP, signal.SIGSTOP, signal.SIGCONT):
            p.send_signal(senal)
        p.communicate()
        self.assertEqual(p.returncode, 0)
        self.corre("check", self.okz)


class DiscoLleno(Cortado):
    def setUp(self):
        super().setUp()
        self.disco = self.d / "disco"
        self.disco.mkdir()
        montado = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=32m", "tmpfs", self.disco],
                                 capture_output=True, check=False)
        if montado.returncode != 0:
            self.skipTest("a small file system cannot be mounted here")
        self.addCleanup(subprocess.run, ["umount", self.disco], check=True)

    def lleno(self, *orden, minimo):
        self.pon("disco/estorbo", desordenado(random.randrange(minimo, 30 * MEBI + minimo)))
        self.assertIn("no queda espacio en el disco", self.error(*orden))
        self.sin_restos(self.disco)

    def test_al_guardar(self):
        self.okz = self.disco / "a.okz"
        self.comprime(self.clave)
        self.pon("c/mucho", desordenado(33 * MEBI))
        for _ in range(VECES):
            self.lleno("compress", self.c, "-o", self.okz, "--level", "1", minimo=1000)
            self.assertEqual(list(self.lista()), ["clave"])

    def test_al_sacar(self):
        self.pon("c/grande", desordenado(30 * MEBI))
        self.comprime(self.c)
        buenos = huella(self.c)
        for _ in range(VECES):
            viejo = self.pon("disco/c/grande", "el de antes")
            self.lleno("extract", self.okz, "-o", self.disco, minimo=MEBI)
            self.assertEqual(viejo.read_text(), "el de antes")
            viejo.unlink()
            self.compara_lo_que_hay(self.disco / "c", buenos)
            shutil.rmtree(self.disco / "c")
            (self.disco / "estorbo").unlink()


@sin_saneador("it takes more memory than there is to be")
class SinMedios(Cortado):
    cargado = 8000  # kB of addresses; grows to what the program and its libraries take

    def test_ni_memoria_ni_descriptores(self):
        """However little there is: all of it, or one line and nothing spoilt."""
        for n in range(20):
            self.pon(f"c/d{n}/a/b/c/f")  # folders that would rather stay open
        self.comprime(self.clave)
        viejo = self.okz.read_bytes()
        for opciones in (("--level", "3"), ("--max",), ("--level", "1", *self.en_clave)):
            for limite in ("-n 5", "-n 8", *self.memorias(1, 9, 29, 149)):
                if not self.sale_con(limite, "compress", self.c, "-o", self.okz, *opciones):
                    self.assertEqual(self.okz.read_bytes(), viejo, limite)
                self.okz.write_bytes(viejo)
            self.comprime(self.c, *opciones, nivel=None)
            if "--encrypt" not in opciones:
                self.okz.write_bytes(self.okz.read_bytes()[:-1])  # without an index
            for limite in ("-n 8", *self.memorias(1, 5, 13, 21, 53)):
                for orden in (("list",), ("check",), ("extract", "-o", self.salida)):
                    sale = self.sale_con(limite, orden[0], self.okz, *orden[1:], *self.con)
                    self.assertTrue(sale or "-v" in limite or orden == ("check",), orden)
            self.okz.write_bytes(viejo)

    def memorias(self, *sobran):
        """Limits that leave so many MB to a run that has been loaded."""
        while subprocess.run(["/bin/sh", "-c", f'ulimit -v {self.cargado} && exec "$0" --version', MOTOR],
                             capture_output=True, check=False).returncode != 0:
            self.cargado += 1000
        return [f"-v {self.cargado + 1000 * n}" for n in sobran]

    def sale_con(self, limite, *orden):
        r = self.corre("-c", f'ulimit {limite} && exec "$@"', "sh", MOTOR, *orden,
                       executable="/bin/sh", falla=None)
        if r.returncode != 0:
            self.assertRegex(r.lineas[-1], ": hay demasiados ficheros abiertos$|no hay memoria bastante$|"
                             "al sistema no le quedan recursos$|le falta el final, o le sobra algo detrás$", (limite, orden))
        self.sin_restos()
        return r.returncode == 0
