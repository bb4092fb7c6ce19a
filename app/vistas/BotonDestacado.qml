import QtQuick
import QtQuick.Controls.Fusion

// The prominent button of a panel, and its default: Return presses it wherever
// the focus is, unless another button has it.
Boton {
    id: boton

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
        border.width: boton.visualFocus ? 2 : 0
        border.color: Tema.texto
    }

    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: boton.enabled && boton.visible && !boton.otroConFoco
        onActivated: boton.clicked()
    }

    // A focused button takes Return for itself; check boxes and the drop area,
    // buttons as well to the toolkit, do not.
    readonly property bool otroConFoco: Window.activeFocusItem instanceof Boton
}
