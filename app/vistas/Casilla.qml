import QtQuick
import QtQuick.Templates as T
import Orcalin

T.CheckBox {
    id: casilla

    readonly property bool senalado: activeFocus && Foco.marcado

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight, implicitIndicatorHeight) + topPadding + bottomPadding
    padding: 6
    leftPadding: 0
    spacing: 8
    font.pixelSize: Tema.cuerpo
    Accessible.name: text

    indicator: Rectangle {
        x: casilla.leftPadding
        y: (casilla.height - height) / 2
        implicitWidth: 16
        implicitHeight: 16
        radius: 3
        color: casilla.checked ? Tema.destacado : Tema.paleta.base
        border.width: casilla.senalado ? 2 : 1
        border.color: casilla.senalado ? Tema.texto : casilla.checked ? Tema.destacado : Tema.borde

        ImagenSistema {
            visible: casilla.checked
            anchors.centerIn: parent
            nombre: "checkmark"
            lado: 12
            tinte: Tema.sobreDestacado
        }
    }
    contentItem: Texto {
        leftPadding: casilla.indicator.width + casilla.spacing
        text: casilla.text
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
