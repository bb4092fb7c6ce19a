import QtQuick
import QtQuick.Controls.Fusion

// The prominent button of a panel, and its default: Return presses it wherever
// the focus is, unless another button has it.
Button {
    id: boton

    property bool porDefecto: true

    highlighted: true
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: boton.porDefecto && boton.enabled && boton.visible && !boton.activeFocus
        onActivated: boton.clicked()
    }
}
