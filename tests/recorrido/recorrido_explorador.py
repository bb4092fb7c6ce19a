"""The stretch of the tour that goes through the archive browser."""

from pasosexplorador import PasosExplorador

CLAVE = "una araña negra"
FOTOS = 114
ENTRADAS = FOTOS + 6


class TramoExplorador(PasosExplorador):
    def prepara_archivo(self):
        viaje = self.casa / "viaje"
        for carpeta in ("apuntes", "fotos"):
            (viaje / carpeta).mkdir(parents=True)
        for dia in range(1, 4):
            (viaje / f"apuntes/mañana {dia}.txt").write_text(f"Al salir el sol {dia}\n" * 40)
        for i in range(FOTOS):
            (viaje / f"fotos/foto {i:03}.raw").write_bytes(bytes(1000 * i))
        self.archivo = self.casa / "viaje.okz"
        self.comprime([viaje], self.archivo, CLAVE)

    def clave(self):
        self.abre_aplicacion(self.casa / "cartas.txt", self.archivo)
        self.lee("Este archivo está cifrado")
        self.app.espera_foco(self.app.espera("password text", "Contraseña"))
        abrir = self.app.espera("push button", "Abrir")
        assert not self.app.activo(abrir), "«Abrir» está activo sin contraseña"
        self.foto("9-clave", "Este archivo está cifrado")

    def cargando(self):
        self.manda_clave("una mosca")
        with self.motor_retenido():
            self.lee("leyendo el archivo…")
            self.foto("10-cargando", "leyendo el archivo…")

    def clave_mala(self):
        self.lee("Este archivo está cifrado")
        campo = self.app.espera("password text", "Contraseña")
        largo = campo.get_text_iface().get_character_count()
        assert largo == len("una mosca"), f"quedan {largo} letras de la contraseña"
        self.foto("11-clave-mala", "Este archivo está cifrado")
        self.manda_clave(CLAVE)

    def lista(self):
        self.lee(f"{ENTRADAS} elementos")
        filas = self.filas()
        for fila in ("viaje, carpeta", "apuntes, en viaje, carpeta",
                     "mañana 1.txt, en viaje/apuntes, archivo, 720 bytes"):
            assert fila in filas, f"no está «{fila}» en {filas}"
        self.app.espera_foco(self.buscador())
        boton = self.app.espera("push button", "Recuperar 0")
        assert not self.app.activo(boton), "«Recuperar 0» está activo"
        self.foto("12-lista")

    def busqueda(self):
        self.persona.teclea("MAÑANA")
        self.lee(f"3 de {ENTRADAS}")
        assert len(self.filas()) == 3, self.filas()
        self.foto("13-busqueda", f"3 de {ENTRADAS}")
        self.app.pulsa("push button", "Borrar la búsqueda")
        self.lee(f"{ENTRADAS} elementos")

    def seleccion(self):
        self.pincha(self.fila("mañana 1.txt"))
        self.recuperables("Recuperar este")
        self.pincha(self.fila("mañana 3.txt"), "shift")
        self.recuperables("Recuperar 3")
        self.pincha(self.fila("viaje"), "ctrl")
        self.recuperables("Recuperar 4")
        self.foto("14-seleccion")

    def carpeta(self):
        self.abre_fila(self.fila("apuntes"))
        self.lee(f"3 de {ENTRADAS}")
        assert self.buscado() == "viaje/apuntes/", self.buscado()
        self.foto("15-carpeta")

    def menu(self):
        fila = self.fila("mañana 2.txt")
        self.pincha(fila)
        self.raton(fila, "click", "3")
        self.menu_con("Abrir", "Recuperar…")
        self.foto("16-menu")
        self.persona.teclas("Escape")
        self.sin_menu()
        self.persona.teclas("Menu")
        self.app.anuncia(lambda dicho: "Abrir" in dicho, "la primera orden")
        self.persona.teclas("Escape")
        self.sin_menu()

    def menu_con(self, *ordenes):
        for orden in ordenes:
            self.app.espera("menu item", orden)

    def sin_menu(self):
        self.persona.hasta(lambda: self.app.busca("menu item", "Recuperar…") is None,
                           "el menú cerrado")

    def apertura(self):
        self.abre_fila(self.fila("mañana 1.txt"))
        with self.motor_retenido():
            self.foto("17-abriendo", "sacándose del archivo")
        ruta, modo = self.persona.hasta(self.visor.toma, "el archivo en su aplicación")
        with open(ruta, "rb") as copia:
            assert copia.read() == (self.casa / "viaje/apuntes/mañana 1.txt").read_bytes(), ruta
        assert modo == 0o444, f"la copia tiene {modo:o}"
        assert str(self.sesion.tmp / "orcalin-ver").encode() in ruta, ruta
        self.lee(f"3 de {ENTRADAS}")

    def ocupado(self):
        self.recuperables("Recuperar este")
        destino = self.casa / "sacado"
        destino.mkdir()
        self.recupera("Recuperar este", destino)
        with self.motor_retenido():
            self.lee("recuperando 1 de 1…")
            self.foto("18-recuperando", "recuperando 1 de 1…")

    def hecho(self):
        self.recuperado()
        self.app.espera("push button", "Ver en el Finder")
        self.foto("19-recuperado", "Recuperado")
        sacados = [r.name for r in (self.casa / "sacado").rglob("*") if r.is_file()]
        assert sacados == ["mañana 1.txt"], sacados
        self.app.pulsa("push button", "Volver")
        self.lee(f"3 de {ENTRADAS}")
        self.recuperables("Recuperar este")
        assert not list(self.sesion.tmp.glob("okz-*")), "queda un fichero con la contraseña"
        self.cierra()

    def danado(self):
        danado = self.casa / "dañado.okz"
        danado.write_bytes(b"esto no es un archivo " * 100)
        self.abre_aplicacion(danado)
        self.app.espera("push button", "Volver")
        self.app.lee(lambda t: "okz" in t and t != danado.name, "el motivo del fallo")
        self.foto("20-danado", "Fallo: ")
        self.app.pulsa("push button", "Volver")
        self.app.espera("push button", "Volver")
        self.app.pulsa("push button", "Guardar algo")
        self.lee("Arrastra aquí lo que quieras guardar")
        self.cierra()

    PASOS_DEL_EXPLORADOR = (prepara_archivo, clave, cargando, clave_mala, lista, busqueda,
                            seleccion, carpeta, menu, apertura, ocupado, hecho, danado)
