import QtQuick
import QtQuick.Templates as T
import Orcalin

// The visible entries, a row each. Mouse and keys select as in any list.
ListView {
    id: lista

    required property Explorador explorador
    // The row that the context menu is for.
    property int filaDelMenu: -1

    // Something was typed that is no command of the list.
    signal tecleado(texto: string)

    // A multiple of four: places far down a long list stay exact in the single
    // precision that the scene is drawn with.
    readonly property int alto: Math.ceil((Tema.cuerpo * 1.4 + Tema.leyenda * 1.4 + 8) / 4) * 4

    function va(fila: int, modificadores: int) {
        if (fila < 0 || fila >= count)
            return;
        currentIndex = fila;
        positionViewAtIndex(fila, ListView.Contain);
        if (modificadores & Qt.ShiftModifier)
            explorador.filas.estira(fila);
        else if (!(modificadores & Qt.ControlModifier))
            explorador.filas.elige(fila);
    }
    function pulsada(fila: int, modificadores: int) {
        forceActiveFocus();
        currentIndex = fila;
        if (modificadores & Qt.ShiftModifier)
            explorador.filas.estira(fila);
        else if (modificadores & Qt.ControlModifier)
            explorador.filas.alterna(fila);
        else
            explorador.filas.elige(fila);
    }
    function menuDe(fila: int) {
        filaDelMenu = fila;
        currentIndex = fila;
    }
    function pagina(): int {
        return Math.max(1, Math.floor(height / alto) - 1);
    }

    model: explorador.filas
    clip: true
    reuseItems: true
    // Rows beyond the edges are made little by little; a search that narrows the
    // list meanwhile leaves the view with one under way that is no longer there.
    cacheBuffer: 0
    activeFocusOnTab: true
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    highlightFollowsCurrentItem: false
    currentIndex: 0
    interactive: true
    pixelAligned: true
    T.ScrollBar.vertical: Deslizador { id: barra }

    Accessible.role: Accessible.List
    Accessible.name: "Contenido de " + explorador.nombre

    // Else the row of before, which the search may have left out.
    Connections {
        target: lista.explorador.filas
        function onModelReset() { lista.currentIndex = 0; }
    }

    Keys.onPressed: event => {
        const m = event.modifiers;
        event.accepted = true;
        if (event.key === Qt.Key_Up && currentIndex <= 0) event.accepted = false;
        else if (event.key === Qt.Key_Up) va(currentIndex - 1, m);
        else if (event.key === Qt.Key_Down) va(currentIndex + 1, m);
        else if (event.key === Qt.Key_PageUp) va(Math.max(0, currentIndex - pagina()), m);
        else if (event.key === Qt.Key_PageDown) va(Math.min(count - 1, currentIndex + pagina()), m);
        else if (event.key === Qt.Key_Home) va(0, m);
        else if (event.key === Qt.Key_End) va(count - 1, m);
        else if (event.matches(StandardKey.SelectAll)) explorador.filas.eligeTodo();
        else if (currentIndex < 0 || currentIndex >= count) event.accepted = false;
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) explorador.abrir(currentIndex);
        else if (event.key === Qt.Key_Space && m & Qt.ControlModifier) explorador.filas.alterna(currentIndex);
        else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && m & Qt.ShiftModifier) {
            menuDe(currentIndex);
            menu.popup(currentItem, 40, alto / 2);
        } else event.accepted = false;

        if (!event.accepted && event.text >= " " && !(m & (Qt.ControlModifier | Qt.AltModifier))) {
            event.accepted = true;
            tecleado(event.text);
        }
    }

    delegate: FilaVista {
        width: lista.width - (barra.visible ? barra.width : 0)
        height: lista.alto
        actual: lista.activeFocus && ListView.isCurrentItem
        onPulsada: modificadores => lista.pulsada(index, modificadores)
        onAbierta: lista.explorador.abrir(index)
        onArrastrada: lista.explorador.arrastrar(index)
        onMenuPedido: (x, y) => {
            lista.menuDe(index);
            menu.popup(this, x, y);
        }
    }

    MenuConNombre {
        id: menu
        nombre: lista.currentItem?.nombre ?? ""
        primera: esCarpeta ? 1 : 0
        readonly property bool esCarpeta: lista.currentItem?.esCarpeta ?? false
        EntradaDeMenu {
            text: "Abrir"
            visible: !menu.esCarpeta
            height: visible ? implicitHeight : 0
            onTriggered: lista.explorador.abrir(lista.filaDelMenu)
        }
        EntradaDeMenu {
            text: "Recuperar…"
            onTriggered: Qt.callLater(lista.explorador.recuperarFila, lista.filaDelMenu)
        }
    }
}
