import QtQuick
import QtQuick.Templates as T

// A text field with a border that shows on any palette.
T.TextField {
    id: campo

    font.pixelSize: Tema.cuerpo
    implicitWidth: 120
    implicitHeight: Math.max(30, contentHeight + topPadding + bottomPadding)
    padding: 4
    verticalAlignment: TextInput.AlignVCenter
    leftPadding: 8
    rightPadding: 8
    color: Tema.paleta.text
    selectionColor: Tema.paleta.highlight
    selectedTextColor: Tema.paleta.highlightedText

    Texto {
        visible: campo.length === 0 && campo.preeditText === ""
        x: campo.leftPadding
        y: campo.topPadding
        width: campo.width - campo.leftPadding - campo.rightPadding
        height: campo.height - campo.topPadding - campo.bottomPadding
        text: campo.placeholderText
        color: Tema.secundario
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 4
        color: Tema.paleta.base
        border.width: campo.activeFocus ? 2 : 1
        border.color: campo.activeFocus ? Tema.acento : Tema.borde
    }
}
