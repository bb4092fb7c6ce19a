import QtQuick
import QtQuick.Templates as T
import Orcalin

T.Button {
    id: boton

    // What has happened, for a screen reader: this toolkit cannot announce it,
    // but what the control with the focus is described by is read out, and read
    // again when it changes.
    property string anuncio
    readonly property bool senalado: activeFocus && Foco.marcado

    implicitWidth: Math.max(80, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    padding: 4
    leftPadding: 14
    rightPadding: 14
    font.pixelSize: Tema.cuerpo
    Accessible.name: text
    // Qt 6.4 does not tell the accessibility bus that a control is disabled.
    Accessible.description: enabled ? anuncio : "no disponible"
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Texto {
        text: boton.text
        color: Tema.paleta.buttonText
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 4
        color: boton.down ? Qt.darker(Tema.paleta.button, 1.15)
             : boton.hovered ? Qt.lighter(Tema.paleta.button, 1.05) : Tema.paleta.button
        border.width: boton.senalado ? 2 : 1
        border.color: boton.senalado ? Tema.acento : Tema.borde
    }
}
