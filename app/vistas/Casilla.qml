import QtQuick
import QtQuick.Controls.Fusion
import Orcalin

CheckBox {
    id: casilla

    readonly property bool senalado: activeFocus && Foco.marcado

    leftPadding: 0
    spacing: 8
    font.pixelSize: Tema.cuerpo
    Accessible.name: text

    // The style's own box all but vanishes on a dark palette.
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
}
