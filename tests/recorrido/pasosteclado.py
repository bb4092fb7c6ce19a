"""Steps of a person without a mouse."""

from pasosexplorador import PasosExplorador


class PasosTeclado(PasosExplorador):
    """Controls are (role, name)."""

    def con_foco(self):
        """The control that the keyboard goes to. What holds it says so too, and
        a list's current item even when the list has lost it."""
        tiene = self.persona.tiene
        dicen = [(papel, nombre) for papel, nombre, nodo in self.app.visibles()
                 if tiene(nodo, "FOCUSED") and not tiene(nodo, "TRANSIENT")]
        return dicen[-1] if dicen else None

    def tabula(self, tecla="Tab"):
        antes = self.con_foco()
        self.persona.teclas(tecla)
        return self.persona.hasta(lambda: self.con_foco() not in (None, antes) and self.con_foco(),
                                  "el foco en otro sitio")

    def espera_foco(self, mando):
        self.persona.hasta(lambda: self.con_foco() == mando, f"el foco en {mando}")

    def enfoca(self, mando, *teclas):
        """Goes there with Tab, and presses these."""
        for _ in range(8):
            if self.con_foco() == mando:
                break
            self.tabula()
        else:
            raise AssertionError(f"el tabulador no llega a {mando}")
        if teclas:
            self.persona.teclas(*teclas)

    def escribe_en_panel(self, rotulo, texto):
        self.app.espera_foco(self.app.espera("text", rotulo))
        self.persona.teclas("ctrl+a")
        self.persona.teclea(str(texto))
        self.persona.teclas("Return")

    def renuncia(self, panel, rotulo="Nombre de fichero:"):
        self.espera_panel(panel)
        self.app.espera_foco(self.app.espera("text", rotulo))
        self.persona.teclas("Escape")
        self.espera_sin_panel()

    def espera_sensible(self, boton):
        nodo = self.app.espera("push button", boton)

        def sensible():
            nodo.clear_cache()
            return self.persona.tiene(nodo, "SENSITIVE")
        self.persona.hasta(sensible, f"«{boton}» activo")
