"""Steps of a person without a mouse."""

from pasosexplorador import PasosExplorador


class PasosTeclado(PasosExplorador):
    """Controls are (role, name). Whoever mixes this in says which has the focus:
    `con_foco`."""

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

    def renuncia(self, panel):
        self.espera_panel(panel)
        self.app.espera_foco(self.app.espera("text", "Nombre de fichero:"))
        self.persona.teclas("Escape")
        self.espera_sin_panel()

    def espera_sensible(self, boton):
        nodo = self.app.espera("push button", boton)

        def sensible():
            nodo.clear_cache()
            return nodo.get_state_set().contains(self.persona.Atspi.StateType.SENSITIVE)
        self.persona.hasta(sensible, f"«{boton}» activo")
