"""What every panel owes to those who do not see it, and to those whose window
is small: nothing without a name, nothing out of reach, nothing out of sight."""

from itertools import combinations

from persona import caja, tiene, todos

# What has a meaning of its own, and so a name.
CON_NOMBRE = {"push button", "check box", "password text", "text", "progress bar", "list",
              "list item", "menu item", "popup menu", "dialog", "label", "image"}
# What the keyboard can go to.
CON_FOCO = {"push button", "check box", "password text", "text", "list", "list item", "menu item"}
SIN_MAS = {"application", "frame", "menu bar", "tool bar", "tool tip", "separator"}


def nombre_de(nodo):
    """Qt hides a password field's name together with its text."""
    return nodo.get_name() or nodo.get_description().partition(". ")[0]


def comun(a, b):
    """The width and the height of what two boxes share."""
    return (min(a[0] + a[2], b[0] + b[2]) - max(a[0], b[0]),
            min(a[1] + a[3], b[1] + b[3]) - max(a[1], b[1]))


def faltas(raiz):
    """Of the window of an application, in words; empty when there are none."""
    raiz.clear_cache()
    vistos = [nodo for nodo in todos(raiz) if nodo is raiz or tiene(nodo, "SHOWING")]
    return [*(falta for nodo in vistos for falta in mudas(nodo)), *fuera_de_sitio(vistos)]


def mudas(nodo):
    papel = nodo.get_role_name()
    quien = f"{papel} «{nombre_de(nodo)}»"
    if papel not in CON_NOMBRE | SIN_MAS:
        yield f"{quien}: papel inesperado"
    if papel in CON_NOMBRE and not nombre_de(nodo).strip():
        yield f"{quien}: sin nombre"
    if papel in CON_FOCO and not tiene(nodo, "FOCUSABLE"):
        yield f"{quien}: fuera del alcance del teclado"


def fuera_de_sitio(vistos):
    marco = next(caja(nodo) for nodo in vistos if nodo.get_role_name() == "frame")
    sueltos = []
    for nodo in vistos:
        papel, suya = nodo.get_role_name(), caja(nodo)
        if papel == "application":
            continue
        ancho, alto = comun(suya, marco)
        corrida = nodo.get_parent().get_role_name() in ("list", "push button")
        if ancho < suya[2] or alto < suya[3] and not corrida:
            yield f"{papel} «{nombre_de(nodo)}»: se sale de la ventana, {suya} de {marco}"
        if papel in ("push button", "check box", "password text", "text", "label", "list",
                     "image") and nodo.get_parent().get_role_name() == "frame":
            sueltos.append((nodo, suya))
    for (uno, su_caja), (otro, otra_caja) in combinations(sueltos, 2):
        if min(comun(su_caja, otra_caja)) > 1:
            yield f"«{nombre_de(uno)}» y «{nombre_de(otro)}» se tapan"
