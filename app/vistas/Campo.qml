import QtQuick
import QtQuick.Controls.Fusion

// A text field with a border that shows on any palette.
TextField {
    id: campo

    font.pixelSize: Tema.cuerpo
    implicitHeight: Math.max(30, contentHeight + topPadding + bottomPadding)
    verticalAlignment: TextInput.AlignVCenter
    leftPadding: 8
    rightPadding: 8
    color: Tema.paleta.text
    placeholderTextColor: Tema.secundario
    background: Rectangle {
        radius: 4
        color: Tema.paleta.base
        border.width: campo.activeFocus ? 2 : 1
        border.color: campo.activeFocus ? Tema.acento : Tema.borde
    }
}
