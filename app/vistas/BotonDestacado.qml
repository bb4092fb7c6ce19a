import QtQuick

// The prominent button of a panel, and its default: Return presses it wherever
// the focus is, unless another such button has it.
Boton {
    id: boton

    // Where Return already means something else there is no default.
    property bool porTecla: true
    // The way back: Escape takes it, too.
    property bool porEscape: false

    highlighted: true
    contentItem: Texto {
        text: boton.text
        color: boton.enabled ? Tema.sobreDestacado : Tema.secundario
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 4
        color: {
            if (!boton.enabled)
                return Tema.apagado;
            return boton.down ? Qt.darker(Tema.destacado, 1.15)
                 : boton.hovered ? Qt.lighter(Tema.destacado, 1.08) : Tema.destacado;
        }
        border.width: boton.senalado ? 2 : 0
        border.color: Tema.texto
    }

    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: boton.porTecla && boton.enabled && boton.visible
            && !(boton.Window.activeFocusItem instanceof Boton)
        onActivated: boton.clicked()
    }
    Shortcut {
        sequence: "Escape"
        enabled: boton.porEscape && boton.visible
        onActivated: boton.clicked()
    }
}
