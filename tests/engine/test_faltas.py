"""Runs that are cut short: killed, cancelled, or out of room, at any moment.

As a command, with more rounds than the tests take (as root under `unshare -m`,
which keeps the small file system to itself):
    ORCALIN_MOTOR=…/orcalin python3 test_faltas.py --veces 200 [Matar] [Cancelar] [DiscoLleno]
"""

import os
import random
import resource
import signal
import subprocess
import sys
import time
import unittest

from motor import Caso, ESCASO, MOTOR, desordenado, foto

MEBI = 1024 * 1024
veces = 4
SENALES = [s for s in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
           if signal.getsignal(s) != signal.SIG_IGN]  # as under nohup


class Cortado(Caso):
    """Rounds with a tree that is different in each, so that no archive passes for another."""

    def setUp(self):
        super().setUp()
        self.c = self.d / "c"
        self.c.mkdir()
        for n in range(40):
            (self.c / f"f{n}").write_bytes(desordenado(20_000) + b"texto " * 5_000)
        (self.c / "grande").write_bytes(desordenado(MEBI) * 3)
        self.cuentas = {}
        self.addCleanup(lambda: veces > 10 and print(type(self).__name__, self.cuentas))
        self.con = ("--password-file", self.clave)

    def cuenta(self, que):
        self.cuentas[que] = self.cuentas.get(que, 0) + 1

    def siguiente(self):
        """Another tree and another way to pack it."""
        (self.c / "marca").write_bytes(desordenado(16))
        modos = (("--level", "3"), ("--level", "19", "--progress"), ("--max",),
                 ("--level", "1", "--encrypt", *self.con, *ESCASO))
        return ("compress", self.c, "-o", self.okz, *random.choice(modos))

    def provisionales(self, donde=None):
        return sorted(p.name for p in (donde or self.d).rglob(".orcalin-*"))

    def marca(self):
        """The tree's mark in the archive, after a look at all of it."""
        self.corre("check", self.okz, *self.con)
        return (self.extrae("--file", "c/marca", *self.con) / "c/marca").read_bytes()

    def corta(self, orden, senal, plazo):
        """Sends the signal at a moment within `plazo` seconds, unless the run is over."""
        p = subprocess.Popen([MOTOR, *orden], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self.addCleanup(p.stderr.close)
        time.sleep(random.uniform(0, plazo))
        p.send_signal(senal)
        desde = time.monotonic()
        p.lineas = p.stderr.read().decode().splitlines()
        p.wait(timeout=30)
        p.tardanza = time.monotonic() - desde
        return p

    def plazo(self, orden):
        desde = time.monotonic()
        self.corre(*orden)
        return time.monotonic() - desde


class Matar(Cortado):
    def test_en_cualquier_momento(self):
        plazo = self.plazo(self.siguiente())
        antes = (self.c / "marca").read_bytes()
        for _ in range(veces):
            orden = self.siguiente()
            ahora = (self.c / "marca").read_bytes()
            self.corta(orden, signal.SIGKILL, plazo)
            hallada = self.marca()
            self.assertIn(hallada, (antes, ahora))
            self.cuenta("queda el viejo" if hallada == antes else "queda el nuevo")
            if self.provisionales():
                self.cuenta("con restos")
            plazo = 0.5 * plazo + 0.5 * self.plazo(self.siguiente())
            self.assertEqual(self.provisionales(), [])
            antes = (self.c / "marca").read_bytes()
            self.assertEqual(self.marca(), antes)

    def test_lo_que_se_limpia_y_lo_que_no(self):
        resto, vivo = ".orcalin-1-22.tmp", f".orcalin-{os.getpid()}-3.tmp"
        otros = {".orcalin-1-2.tmp.txt", ".orcalin-1-.tmp", ".orcalin--2.tmp", "orcalin-1-2.tmp",
                 ".orcalin-1-2-3.tmp", ".orcalin-.tmp"}
        sitio = self.d / "sitio"
        sitio.mkdir()
        for nombre in {resto, vivo, *otros}:
            (sitio / nombre).write_text("x")
        (sitio / ".orcalin-1-4.tmp").symlink_to(self.clave)
        (sitio / ".orcalin-1-5.tmp").mkdir()
        quedan = {p.name for p in sitio.iterdir()} - {resto}
        if os.geteuid() == 0:
            (sitio / ".orcalin-1-6.tmp").write_text("x")
            os.chown(sitio / ".orcalin-1-6.tmp", 1, 1)
            quedan |= {".orcalin-1-6.tmp"}
        cerrojo = subprocess.Popen(["flock", sitio / vivo, "-c", "echo; cat"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(cerrojo.communicate)
        cerrojo.stdout.readline()
        self.comprime(self.clave)
        self.extrae(a="sitio")  # it cleans where it writes, and an archive does, too
        self.assertEqual({p.name for p in sitio.iterdir()}, quedan | {"clave"})
        (sitio / resto).write_text("x")
        self.corre("compress", self.clave, "-o", sitio / "a.okz")
        self.assertEqual({p.name for p in sitio.iterdir()}, quedan | {"clave", "a.okz"})


class Cancelar(Cortado):
    def juzga_cancelado(self, p, texto):
        """Whether the run was cancelled; it may have ended before, or not begun."""
        self.assertLess(p.tardanza, 1)
        self.cuentas["lo que más tardó"] = max(self.cuentas.get("lo que más tardó", 0), p.tardanza)
        if p.returncode == 1:
            self.assertEqual(p.lineas[-1], "Error: " + texto)
            self.assertEqual(len([l for l in p.lineas if "Error" in l]), 1)
        else:
            self.assertIn(p.returncode, (0, *(-s for s in SENALES)))
        return {0: "acabado", 1: "cancelado"}.get(p.returncode, "antes de empezar")

    def test_al_guardar(self):
        plazo = self.plazo(self.siguiente())
        for n in range(veces):
            antes = self.okz.read_bytes()
            orden = self.siguiente()
            if n % 4 == 3:
                # Nobody writes into this pipe; or the derivation takes half a second.
                tuberia = self.d / f"tubería{n}"
                os.mkfifo(tuberia)
                orden = random.choice(((*orden[:4], "--encrypt", "--password-file", tuberia),
                                       (*orden[:4], "--encrypt", *self.con)))
            p = self.corta(orden, random.choice(SENALES), plazo)
            como = self.juzga_cancelado(p, "guardado cancelado")
            self.cuenta(como)
            self.assertEqual(self.provisionales(), [])
            if como == "acabado":
                self.assertEqual(self.marca(), (self.c / "marca").read_bytes())
            else:
                self.assertEqual(self.okz.read_bytes(), antes)

    def test_al_sacar(self):
        self.comprime(self.c)
        buenos = foto(self.c)
        plazo = self.plazo(("extract", self.okz, "-o", self.d / "todo"))
        for n in range(veces):
            salida = self.d / "s"
            p = self.corta(("extract", self.okz, "-o", salida), random.choice(SENALES), plazo)
            self.cuenta(self.juzga_cancelado(p, "extracción cancelada"))
            self.assertEqual(self.provisionales(salida), [])
            for ruta, ficha in foto(salida / "c").items():
                if ruta != b".":
                    self.assertEqual(ficha[2], buenos[ruta][2], ruta)
            if n % 2:
                subprocess.run(["rm", "-r", salida], check=False)

    def test_aunque_nadie_lea(self):
        lectura, escritura = os.pipe()
        os.set_blocking(escritura, False)
        try:
            while True:
                os.write(escritura, b"x" * 4096)
        except BlockingIOError:
            os.set_blocking(escritura, True)
        p = subprocess.Popen([MOTOR, *self.siguiente()[:4], "--progress", "--max"], stderr=escritura)
        self.addCleanup(os.close, lectura)
        os.close(escritura)
        while p.poll() is None and not self.provisionales():
            time.sleep(0.01)
        p.terminate()
        self.assertEqual(p.wait(timeout=1), 1)
        self.assertEqual(self.provisionales(), [])

    def test_quien_arranca_decide(self):
        # In the background of a script, and under nohup.
        p = subprocess.Popen(["sh", "-c", 'trap "" INT HUP; exec "$@"', "sh", MOTOR,
                              "compress", self.c, "-o", self.okz, "--level", "19", "--progress"],
                             stderr=subprocess.PIPE)
        p.stderr.readline()
        p.send_signal(signal.SIGINT)
        p.send_signal(signal.SIGHUP)
        p.communicate()
        self.assertEqual(p.returncode, 0)


class SinMemoria(Cortado):
    def test_lo_dice(self):
        clave = ("--encrypt", *self.con, *ESCASO)
        self.corre("compress", self.c, "-o", self.okz, *clave)
        for mega in (20, *range(32, 48, 2), 70):
            limite = lambda: resource.setrlimit(resource.RLIMIT_AS, (mega * 1000 * 1024,) * 2)
            for orden in (("compress", self.c, "-o", self.d / "b.okz", *clave),
                          ("extract", self.okz, "-o", self.d / "s", *self.con)):
                r = subprocess.run([MOTOR, *orden], capture_output=True, preexec_fn=limite,
                                   check=False)
                if r.returncode != 0:
                    self.assertIn(r.stderr.decode().splitlines()[-1:],
                                  (["Error: no hay memoria bastante"],
                                   ["Error: al sistema no le quedan recursos"]), (mega, orden[0]))


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

    def lleno(self, *orden):
        mensaje = self.error(*orden)
        self.assertIn("no queda espacio en el disco", mensaje)
        self.assertEqual(self.provisionales(self.disco), [])
        self.cuenta(mensaje)

    def test_al_guardar(self):
        self.okz = self.disco / "a.okz"
        self.comprime(self.clave)
        (self.c / "mucho").write_bytes(desordenado(33 * MEBI))
        for _ in range(veces):
            orden = self.siguiente()
            (self.disco / "estorbo").write_bytes(desordenado(random.randrange(1000, 30 * MEBI)))
            self.lleno(*orden[:4], "--level", "1")
            self.assertEqual(list(self.lista()), ["clave"])
        (self.disco / "estorbo").unlink()
        self.assertEqual([p.name for p in self.disco.iterdir()], ["a.okz"])

    def test_al_sacar(self):
        (self.c / "grande").write_bytes(desordenado(30 * MEBI))
        self.comprime(self.c)
        buenos = foto(self.c)
        for n in range(veces):
            (self.disco / "c").mkdir()
            (self.disco / "c/grande").write_text("el de antes")
            (self.disco / "estorbo").write_bytes(desordenado(random.randrange(2 * MEBI, 31 * MEBI)))
            self.lleno("extract", self.okz, "-o", self.disco)
            self.assertEqual((self.disco / "c/grande").read_text(), "el de antes")
            (self.disco / "c/grande").unlink()
            for ruta, ficha in foto(self.disco / "c").items():
                if ruta != b".":
                    self.assertEqual(ficha[2], buenos[ruta][2], (n, ruta))
            subprocess.run(["rm", "-r", self.disco / "c", self.disco / "estorbo"], check=True)


if __name__ == "__main__":
    if "--veces" in sys.argv:
        i = sys.argv.index("--veces")
        veces = int(sys.argv[i + 1])
        del sys.argv[i:i + 2]
    unittest.main()
